# shellcheck shell=bash
# Completion of korvo for bash.

# _korvo_files WORD SUFFIX…
_korvo_files() {
  local word=$1 suffix
  shift
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(
    for suffix in "$@"; do
      compgen -f -X "!*.$suffix" -- "$word"
    done
    compgen -d -- "$word"
  )
}

# By the names of their files: titles are long, and many.
_korvo_styles() {
  mapfile -t COMPREPLY < <(
    find /usr/share/citation-style-language/styles -name "$1*.csl" -printf '%f\n' 2>/dev/null |
      sed 's/\.csl$//'
  )
}

_korvo() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local exports=(bib bibtex biblatex ris json)
  local options='--library --plug-in --favorite --default-style --select --version --help'
  COMPREPLY=()
  # Of "--library=a.bib" bash makes three words.
  if [[ $word == = ]]; then
    word=
  elif [[ $previous == = ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  case $previous in
    --library)
      _korvo_files "$word" "${exports[@]}" korvolib
      return
      ;;
    --into)
      _korvo_files "$word" korvolib
      return
      ;;
    --plug-in)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -d -- "$word")
      return
      ;;
    --favorite | --default-style)
      _korvo_styles "$word"
      return
      ;;
    --select)
      return
      ;;
  esac
  if [[ $COMP_CWORD -gt 1 && ${COMP_WORDS[1]} == import ]]; then
    if [[ $word == -* ]]; then
      mapfile -t COMPREPLY < <(compgen -W '--into --help' -- "$word")
    else
      _korvo_files "$word" "${exports[@]}"
    fi
  elif [[ $COMP_CWORD -eq 1 ]]; then
    mapfile -t COMPREPLY < <(compgen -W "import $options" -- "$word")
  else
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  fi
}

complete -F _korvo korvo
