# Completion of tarvikctl for bash.

_tarvikctl() {
  local IFS=$'\n' current=${COMP_WORDS[COMP_CWORD]} word place=() words=() i
  COMPREPLY=()
  # The command and what stands behind it, without options and their values.
  for ((i = 1; i < COMP_CWORD; ++i)); do
    word=${COMP_WORDS[i]}
    case $word in
      --server | --driver) place=("$word" "${COMP_WORDS[i + 1]}"); ((++i)) ;;
      -*) ;;
      *) words+=("$word") ;;
    esac
  done

  if [[ $current == -* ]]; then
    COMPREPLY=($(compgen -W $'--server\n--driver\n--json\n--help\n--version\n--exact\n--strict\n--bits' -- "$current"))
    return
  fi

  local command=${words[0]} behind=${#words[@]} offers=
  if [[ $command == pattern ]]; then
    ((--behind))
    [[ $behind == 0 ]] && offers=$'get\nset\nprbs'
    [[ $behind == 2 ]] && offers=$'1\n2\nstrobe'
    [[ $behind == 3 ]] && compopt -o default 2>/dev/null
  fi
  if [[ $behind == 0 && -z $offers ]]; then
    offers=$'list\nkeys\ninfo\nget\nset\nsave\nload\ndiff\npattern\nerrors\nreset\nselftest'
  elif [[ $command == diff || $behind == 1 && $command != list && $command != keys ]]; then
    offers=$(tarvikctl "${place[@]}" list 2>/dev/null | cut -f1)
    [[ $command == diff ]] && compopt -o default 2>/dev/null
  elif [[ $command == get ]]; then
    offers=$(tarvikctl keys | cut -f1)
  elif [[ $command == set ]]; then
    offers=$(tarvikctl keys | cut -f1 | sed 's/$/=/')
    compopt -o nospace 2>/dev/null
  elif [[ $command == save || $command == load ]]; then
    compopt -o default 2>/dev/null
  fi
  # Quoted as the shell wants blanks and brackets typed, but compared as they are.
  local offer
  for offer in $offers; do
    [[ $offer == "$current"* ]] && COMPREPLY+=("$offer")
  done
}

complete -F _tarvikctl tarvikctl
