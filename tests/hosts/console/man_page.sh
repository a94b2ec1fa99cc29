#!/usr/bin/env bash
# Compares the man page with the program's help. Both must name the same commands, options, arguments and
# exit statuses, and the help must describe each of them. The script accepts programs without commands.
# usage: man_page.sh PAGE PROGRAM
set -euo pipefail
export LC_ALL=C

page=$1 program=$2
failures=0

complain() {
  printf '%s: %s\n' "$page" "$*" >&2
  failures=$((failures + 1))
}

# compare WHAT HELP-NAMES PAGE-NAMES
# Checks that the two lists have the same names, one on each line, and that HELP-NAMES is not empty. WHAT
# describes the names.
compare() {
  local difference
  [[ -n $2 ]] || complain "the help has no $1"
  difference=$(diff --unified=0 --label help --label page <(sort -u <<<"$2") <(sort -u <<<"$3")) ||
    complain "$1:"$'\n'"$difference"
}

# Reads a help text from standard input. Prints the names in its section $1, for example
# "--state FILE". Omits names without a description. A description can begin on the line after the name.
names_of_help() {
  sed -nE "/^$1:/,/^$/p" |
    sed -E ':join; N; $!b join; s/\n {10,}/  /g; s/ (REQUIRED|\.\.\.)//g; s/=LEVEL/ /g' |
    sed -En 's/^  (-[a-z],)?([A-Za-z-]+( [A-Z]+)?) {2,}[^ ].*/\2/p'
}

# Prints the lines of the section $1 of the man page.
section() { sed -n "/^\.Sh $1$/,/^\.Sh /p" "$page"; }

# Prints the arguments and the long options, with their values, in the synopsis that begins with the line
# $1. If several synopses begin with this line, uses the first one.
names_of_synopsis() {
  section SYNOPSIS | awk -v line="$1" '
    $0 == ".Nm" { inside = 0 }
    $0 == line { inside = ++blocks == 1 }
    inside' | grep -oE 'Fl -[a-z-]+( Ar [A-Z]+)?|^\.Ar [A-Z]+' | sed 's/^Fl /-/; s/\.\?Ar //' || true
}

# Prints all commands, one on each line. Prints nested commands such as `state show`, but not `state`.
commands() {
  local command below
  "$program" --help | names_of_help Subcommands | while read -r command; do
    below=$("$program" "$command" --help | names_of_help Subcommands)
    if [[ -z $below ]]; then
      printf '%s\n' "$command"
    else
      printf '%s\n' "$below" | sed "s/^/$command /"
    fi
  done
}

# Checks that the synopsis in the man page and the output of --help have the same options and arguments,
# apart from --help and --version. $1 is the first line of the synopsis, and the other parameters of this
# function are the words of the command. Appends the options of the command to $options.
compare_synopsis() {
  local line=$1 names
  shift
  options+=$'\n'$("$program" "$@" --help | names_of_help Options)
  names=$("$program" "$@" --help | names_of_help '(Options|Positionals)')
  compare "options and arguments of '$*'" "$(grep -vxF -e --help -e --version <<<"$names")" \
    "$(names_of_synopsis "$line")"
}

all=$(commands)
options=$("$program" --help | names_of_help Options)
if [[ -z $all ]]; then
  compare_synopsis .Nm
else
  compare 'commands in SYNOPSIS' "$all" "$(section SYNOPSIS | sed -n 's/^\.Cm //p')"
  compare 'commands in DESCRIPTION' "$all" "$(section DESCRIPTION | sed -n 's/^\.It Cm //p')"
  while read -r command; do
    read -ra words <<<"$command"
    compare_synopsis ".Cm $command" "${words[@]}"
  done <<<"$all"
fi
compare OPTIONS "$options" \
  "$(section OPTIONS | sed -En 's/ Ns .*//; s/ Ar / /; s/^\.It (Fl [a-z] , )?Fl (-.+)/-\2/p')"

statuses=$("$program" --help | sed -n '/^Exit status:/,$p' | sed -En 's/^ *([0-9]+) .*/\1/p')
compare 'EXIT STATUS' "$statuses" "$(section 'EXIT STATUS' | sed -n 's/^\.It //p')"

((failures == 0))
