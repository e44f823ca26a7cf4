# bash completion for xrf: the command itself knows what may follow.

# The word as the command would get it: without quotes and backslashes.
_xrf_unquoted() {
  local plain=$1
  case $plain in
    \'*) plain=${plain#\'} plain=${plain%\'} ;;
    \"*) plain=${plain#\"} plain=${plain%\"} ;;
    *) plain=${plain//\\/} ;;
  esac
  printf -v "$2" %s "$plain"
}

# Files with one of the extensions, and folders on the way to them.
_xrf_files() {
  local typed=$1 extension file
  shift
  compopt -o filenames
  while IFS= read -r file; do
    if [ -d "$file" ]; then
      COMPREPLY+=("$file")
    else
      for extension; do
        case $file in *."$extension") COMPREPLY+=("$file") ;; esac
      done
    fi
  done < <(compgen -f -- "$typed")
}

_xrf() {
  local -a words=()
  local word line typed=${COMP_WORDS[COMP_CWORD]}
  for word in "${COMP_WORDS[@]:1:COMP_CWORD}"; do
    _xrf_unquoted "$word" word
    words+=("$word")
  done
  COMPREPLY=()
  while IFS= read -r line; do
    case $line in
      :files*)
        # shellcheck disable=SC2086
        _xrf_files "$word" ${line#:files}
        ;;
      *)
        line=${line%%$'\t'*}
        case $line in */) compopt -o nospace ;; esac
        case $typed in
          [\'\"]*) ;;
          *) printf -v line %q "$line" ;;
        esac
        COMPREPLY+=("$line")
        ;;
    esac
  done < <("${COMP_WORDS[0]/#\~/$HOME}" __complete "${words[@]}" 2>/dev/null)
}

complete -F _xrf xrf
