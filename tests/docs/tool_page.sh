#!/usr/bin/env bash
# tool_page.sh PQXVIDEO PAGE: the page names the commands and options that the tool's help names, and no others.
set -euo pipefail
tool=$1 page=$2

# The help of a command, and those of the commands below it, each line behind the command's name.
helps() {
  local text command
  text=$("$tool" "$@" --help)
  grep -oP '^ +(-\w,)?\K--[\w-]+' <<<"$text" | sed "s/^/$* /" || true
  sed -n '/^Subcommands:/,$p' <<<"$text" | grep -oP '^  \K\w+' | while read -r command; do
    echo "$* $command"
    helps "$@" "$command"
  done || true
}
# Options of all commands that the page names in the section on the command, the general ones in OPTIONS.
named() {
  sed 's/\\-/-/g' "$page" | awk '
    /^\.SS / { command = substr($0, 5); print command; if (split(command, part, " ") == 2) print part[1] }
    /^\.SH / { command = $2 == "OPTIONS" ? "" : "none" }
    command != "none" && match($0, /^\.(B|BI|BR) .*--[a-z-]+/) {
      option = substr($0, index($0, "--")); sub(/[^a-z-].*/, "", option); print command " " option
    }'
}
expected=$(helps | sed 's/^ *//' | grep -v -e '. --help$' | sort -u)
[ "$(wc -l <<<"$expected")" -ge 10 ] || { echo "found too little in the help: $expected"; exit 1; }
wrong=$(diff <(echo "$expected") <(named | sed 's/^ *//' | sort -u) || true)
[ -z "$wrong" ] || { sed -n 's/^</the page lacks:/p; s/^>/the tool lacks:/p' <<<"$wrong"; exit 1; }
