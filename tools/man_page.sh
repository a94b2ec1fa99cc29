#!/usr/bin/env bash
# Converts a Markdown page to the man page ornwhatsnew(5).
# usage: man_page.sh LOWDOWN PAGE VERSION OUTPUT
set -euo pipefail

lowdown=$1 page=$2 version=$3 output=$4

# Use the date of the last commit that changed the page, so that the same sources give the same file.
# Outside a git clone, use the modification date of the page.
date=$(git -C "$(dirname "$page")" log -1 --format=%cs -- "$page" 2>/dev/null || true)

# Correct the output of lowdown. mandoc does not support the font C. A link to another page would show the
# file name twice. A paragraph macro directly after a heading is redundant.
"$lowdown" -sTman -m title=ORNWHATSNEW -m section=5 -m "date=${date:-$(date -u -r "$page" +%F)}" \
  -m "source=ornwhatsnew $version" -m 'volume=File Formats' "$page" |
  sed -e 's/\\fC/\\fB/g' -e 's/ <\\fI[^<>]*\.md\(#[^<>]*\)\?\\fR>//g' |
  awk '/^\.(PP|LP)$/ && isTitle { next } { print; isTitle = isHeading; isHeading = /^\.S[HS]$/ }' \
    >"$output.new"
mv "$output.new" "$output"
