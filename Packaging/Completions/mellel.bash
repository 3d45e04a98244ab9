# shellcheck shell=bash
# Completion of mellel for bash.

_mellel_documents() {
  local IFS=$'\n'
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -f -X '!*.rtf' -- "$1"; compgen -d -- "$1")
}

# By the names of their files: titles are long, and many.
_mellel_styles() {
  mapfile -t COMPREPLY < <(
    find /usr/share/citation-style-language/styles -name "$1*.csl" -printf '%f\n' 2>/dev/null |
      sed 's/\.csl$//'
  )
}

_mellel() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command=${COMP_WORDS[1]} options='--timeout --quiet'
  COMPREPLY=()
  if [[ $COMP_CWORD -eq 1 ]]; then
    mapfile -t COMPREPLY < <(
      compgen -W 'scan live check insert open handshake --version --help' -- "$word"
    )
    return
  fi
  # Of "--style=apa" bash makes three words.
  if [[ $word == = ]]; then
    word=
  elif [[ $previous == = ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  case $previous in
    --style)
      _mellel_styles "$word"
      return
      ;;
    --into | -o)
      _mellel_documents "$word"
      return
      ;;
    --at | --timeout)
      return
      ;;
  esac
  case $command in
    scan)
      options+=' --style -o --no-bibliography --footnotes --json --strict'
      ;;
    live)
      options+=' --style -o --no-bibliography --footnotes --json --strict --watch'
      ;;
    check)
      options+=' --json --strict'
      ;;
    insert)
      options+=' --into --at -o'
      ;;
  esac
  if [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  elif [[ $command == scan || $command == live || $command == check ]]; then
    _mellel_documents "$word"
  fi
}

complete -F _mellel mellel
