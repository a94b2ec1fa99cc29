# shellcheck shell=bash
# What bash offers behind `ornwhatsnew`. It asks the program, whose help names all that there is, so
# that nothing is kept here twice.

_ornwhatsnew() {
  local program=$1 current=$2 previous=$3
  COMPREPLY=()

  # `--format=json` reaches us as three words.
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
    FORMAT) _ornwhatsnew_offer "$current" text json && return ;;
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

# The names that a section of the help lists: those of commands, or the options' long ones.
_ornwhatsnew_names() {
  awk -v section="$1:" '
    /^[^ ]/ { inside = ($0 == section); next }
    inside && /^  [^ ]/ { name = $1; sub(/^-[a-z],/, "", name); print name }
  ' <<<"$2"
}

# The kind of value that an option takes, such as FILE; empty when it takes none.
_ornwhatsnew_value() {
  [[ $2 == -* ]] || return 0
  awk -v option="$2" '$1 == option && $2 ~ /^[A-Z]+$/ { print $2 }' <<<"$1"
}

_ornwhatsnew_offer() {
  local current=$1
  shift
  mapfile -t COMPREPLY < <(compgen -W "$*" -- "$current")
}

_ornwhatsnew_files() {
  compopt -o filenames 2>/dev/null || true # outside of a completion there is none
  mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

complete -F _ornwhatsnew ornwhatsnew
