# shellcheck shell=bash

# Part of ./dev: generates the picture of the panel in README.md from the output of the program.

picture_file=docs/images/panel.png
picture_columns=84
picture_lines=39

# Prints an HTML page that shows the panel like a terminal. Removes the link targets. Replaces faint
# text with grey text, because aha does not support faint text. Shortens the panel with sed instead of
# head, because `show` fails if its reader exits early.
picture_page() {
  cat <<'HTML'
<!doctype html><meta charset="utf-8"><style>
body { margin: 0; padding: 22px 28px; background: #1d1f29; color: #d8dae5; }
pre { margin: 0; font: 17px/1.32 "DejaVu Sans Mono", monospace; }
</style><pre>
HTML
  "$1" show examples/herbarium/whatsnew.csv --host examples/herbarium/host.json --only-new \
    --platform --relevant-versions --state :memory: --color always --width "$picture_columns" |
    sed -E -e "$((picture_lines + 1)),\$d" -e 's/\x1b]8;[^\x1b]*\x1b\\//g' -e 's/\x1b\[2m/\x1b[90m/g' |
    aha --no-header | picture_colors
  echo '</pre>'
}

# Replaces aha's bright colours with colours for a dark background.
picture_colors() {
  sed -E -e 's/filter: [^;]*;color:white;background-color:blue;/color:#1d1f29;background:#82aaff;/g' \
    -e 's/filter: [^;]*;color:blue;/color:#82aaff;/g' \
    -e 's/filter: [^;]*;color:(dimgray|black|gray);/color:#7f8496;/g' -e 's/purple/#c792ea/g'
}

command_picture() {
  no_arguments picture "$@"
  ensure_packages picture
  build_everything
  local folder size
  folder=$(mktemp -d)
  picture_page build/release/bin/ornwhatsnew >"$folder/panel.html"
  size=$((picture_columns * 1024 / 100 + 56)),$((picture_lines * 2244 / 100 + 44))
  say "Writing $picture_file"
  chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run \
    --disable-background-networking --disable-component-update --disable-sync \
    --user-data-dir="$folder/profile" --force-device-scale-factor=1.25 --hide-scrollbars \
    --window-size="$size" --screenshot="$folder/panel.png" "file://$folder/panel.html" \
    >"$(log_file picture)" 2>&1 || fail "cannot write the picture; see build/log/picture.log"
  mv "$folder/panel.png" "$picture_file"
  rm -rf "$folder"
}
