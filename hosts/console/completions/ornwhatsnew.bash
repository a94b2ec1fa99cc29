# shellcheck shell=bash
# Completes command lines of `ornwhatsnew` in bash. Reads the commands and options from the program's
# help, so that this file does not have to list them.

_ornwhatsnew() {
  local program=$1 current=$2 previous=$3
  COMPREPLY=()

  # Bash splits `--format=json` into three words.
  if [[ $current == '=' ]]; then
    current=''
  elif [[ $previous == '=' ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi

  local help command=() word index
  help=$("$program" --help 2>/dev/null) || return 0
  for ((index = 1; index < COMP_CWORD; ++index)); do
    word=${COMP_WORDS[index]}
    [[ $word != -* ]] || continue
    if _ornwhatsnew_names Subcommands "$help" | grep -qxF -e "$word"; then
      command+=("$word")
      help=$("$program" "${command[@]}" --help 2>/dev/null) || return 0
    fi
  done

  local value
  value=$(_ornwhatsnew_value "$help" "$previous")
  case $value in
    '') ;;
    FORMAT)
      local formats=(text json)
      [[ ${command[*]} != show ]] || formats+=(plain html markdown)
      _ornwhatsnew_offer "$current" "${formats[@]}" && return
      ;;
    STYLE) _ornwhatsnew_offer "$current" text json sarif github && return ;;
    LEVEL) _ornwhatsnew_offer "$current" note warning error && return ;;
    CODE) _ornwhatsnew_codes "$program" "$current" && return ;;
    OLD) _ornwhatsnew_files "$current" && return ;;
    WHEN) _ornwhatsnew_offer "$current" auto always never && return ;;
    FILE) _ornwhatsnew_files "$current" && return ;;
    *) return 0 ;;
  esac

  local names
  if [[ $current == -* ]]; then
    mapfile -t names < <(_ornwhatsnew_names Options "$help")
    _ornwhatsnew_offer "$current" "${names[@]}"
    return
  fi
  mapfile -t names < <(_ornwhatsnew_names Subcommands "$help")
  if [[ ${command[*]} == console && $previous == console ]]; then
    mapfile -t names < <("$program" console help 2>/dev/null | sed 's/ .*//')
  fi
  if ((${#names[@]} > 0)); then
    _ornwhatsnew_offer "$current" "${names[@]}"
  elif [[ ${command[*]} != state* ]]; then
    _ornwhatsnew_files "$current"
  fi
}

# _ornwhatsnew_names SECTION HELP
# Prints the names in a section of a help text. A name is a command or a long option.
_ornwhatsnew_names() {
  awk -v section="$1:" '
    /^[^ ]/ { inside = ($0 == section); next }
    inside && /^  [^ ]/ { name = $1; sub(/^-[a-z],/, "", name); print name }
  ' <<<"$2"
}

# _ornwhatsnew_value HELP OPTION
# Prints the placeholder for the value of an option, such as FILE. Prints nothing if the option has no
# value.
_ornwhatsnew_value() {
  [[ $2 == -* ]] || return 0
  awk -v option="$2" '
    $2 ~ /^[A-Z]+$/ {
      count = split($1, names, ",")
      for (i = 1; i <= count; ++i) if (names[i] == option) print $2
    }
  ' <<<"$1"
}

# _ornwhatsnew_codes PROGRAM CURRENT
# Offers the codes of `lint` that begin with CURRENT.
_ornwhatsnew_codes() {
  local codes
  mapfile -t codes < <("$1" lint --list-codes 2>/dev/null | sed 's/ .*//')
  _ornwhatsnew_offer "$2" "${codes[@]}"
}

# _ornwhatsnew_offer CURRENT WORD...
# Offers the words that begin with CURRENT, the word that the user is typing.
_ornwhatsnew_offer() {
  local current=$1
  shift
  mapfile -t COMPREPLY < <(compgen -W "$*" -- "$current")
}

# _ornwhatsnew_files CURRENT
# Offers the files whose names begin with CURRENT.
_ornwhatsnew_files() {
  compopt -o filenames 2>/dev/null || true # compopt fails outside of a completion
  mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

complete -F _ornwhatsnew ornwhatsnew
