# Completion of tarvik-scpi for bash.

_tarvik_scpi() {
  local IFS=$'\n' current=${COMP_WORDS[COMP_CWORD]} words=() offers= i
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      --timeout | --name | --profile | --log) ((++i)) ;;
      -*) ;;
      *) words+=("${COMP_WORDS[i]}") ;;
    esac
  done

  case ${COMP_WORDS[COMP_CWORD - 1]} in
    --profile) offers=$(tarvik-scpi profiles 2>/dev/null | cut -f 1) ;;
    --log) compopt -o default 2>/dev/null; return ;;
    --timeout | --name) return ;;
    *)
      if [[ $current == -* ]]; then
        offers=$'--timeout\n--help\n--version'
        [[ ${words[0]} == add ]] && offers+=$'\n--name\n--profile\n--log'
        [[ ${words[0]} == discover ]] && offers+=$'\n--add'
      elif [[ ${#words[@]} == 0 ]]; then
        offers=$'add\nlist\nremove\ndiscover\ncheck\nprofiles'
      elif [[ ${words[0]} == remove && ${#words[@]} == 1 ]]; then
        offers=$(tarvik-scpi list 2>/dev/null | cut -f 1)
      elif [[ ${words[0]} == check && ${#words[@]} == 1 ]]; then
        compopt -o default 2>/dev/null
        offers=$(tarvik-scpi profiles 2>/dev/null | cut -f 1)
      fi ;;
  esac
  COMPREPLY=($(compgen -W "$offers" -- "$current"))
  # Names with blanks stand on the command line as one word.
  for i in "${!COMPREPLY[@]}"; do COMPREPLY[i]=$(printf %q "${COMPREPLY[i]}"); done
}

complete -F _tarvik_scpi tarvik-scpi
