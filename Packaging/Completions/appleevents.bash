# shellcheck shell=bash
# Completion of appleevents for bash.

_appleevents() {
  local word=${COMP_WORDS[COMP_CWORD]} options=
  COMPREPLY=()
  if [[ $COMP_CWORD -eq 1 ]]; then
    mapfile -t COMPREPLY < <(compgen -W 'explain record show replay --version --help' -- "$word")
    return
  fi
  case ${COMP_WORDS[1]} in
    explain)
      options='--reply --hex --bytes --json'
      ;;
    record)
      options='-o --anonymous --no-times'
      ;;
    show)
      options='--event --html'
      ;;
    replay)
      options='--timeout --against'
      ;;
  esac
  if [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  else
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}

complete -F _appleevents appleevents
