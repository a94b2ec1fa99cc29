#!/usr/bin/env bash
# Tests that translators can use the template of `ornwhatsnew messages` with gettext, and that the
# program shows their translations. usage: messages.sh PROGRAM
set -euo pipefail
export LC_ALL=C.UTF-8

program=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

fail() {
  printf '%s\n' "$*" >&2
  exit 1
}

header='App Version,Grouping ID,Jira ID,Salience,Rating,First Version,Platform,URL,Commit,Message'
printf '%s\n' "$header" \
  '4.3,MAP-7,,,,,,https://a.example,,"$$$/news/43/zoom=Zooms ^[twice^]#{comment}Keep it short."' \
  '4.3,MISC,,,,,,,,$$$/news/43/start=Starts faster' >'whats new.csv'
cat >host.json <<'JSON'
{"betaFeatures": [{"internalKey": "map", "epicKey": "MAP-7", "enabled": true,
  "name": "$$$/map/name=Map", "description": "$$$/map/text=Shows sheets."}]}
JSON

# translate TEMPLATE
# Prints the template with a translation of each string. The translation has "de:" before the first
# capital letter that is not part of markup.
translate() {
  msgen "$1" | msgfilter --keep-header sed -E 's/(^|[^^])([A-Z])/\1de:\2/'
}

"$program" messages 'whats new.csv' --host host.json >news.pot
msgfmt --check --output-file=/dev/null news.pot
msgcat news.pot >/dev/null
[[ $(grep -c '^msgctxt' news.pot) == 27 ]] || fail "the template does not have 27 entries"
grep -qxF '#. Keep it short.' news.pot || fail 'the template has no comment'

translate news.pot >de.po
msgfmt --check --output-file=de.mo de.po
sed 's/^{/{"dictionaryFiles": ["de.mo"], /' host.json >host.de.json
output=$("$program" show 'whats new.csv' --host host.de.json --state :memory:)
for text in 'de:Map' 'de:Shows sheets.' 'de:View more' 'de:Zooms “twice”' 'de:Starts faster' \
  'de:Miscellaneous' 'de:Changes since'; do
  [[ $output == *"$text"* ]] || fail "the panel does not contain '$text':"$'\n'"$output"
done

# If a default text changes, msgmerge marks its translation as fuzzy, and the panel shows the new default
# text. All other translations remain.
sed -i 's/Starts faster/Starts much faster/' 'whats new.csv'
"$program" messages 'whats new.csv' --host host.json >news.pot
msgmerge --quiet --update --backup=none de.po news.pot
msgfmt --check --output-file=de.mo de.po
output=$("$program" show 'whats new.csv' --host host.de.json --state :memory:)
for text in 'de:Zooms “twice”' '•  Starts much faster'; do
  [[ $output == *"$text"* ]] || fail "the panel does not contain '$text':"$'\n'"$output"
done
