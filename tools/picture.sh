# shellcheck shell=bash

# Part of ./dev: generates the pictures in the documents from the running programs.

picture_folder=docs/images
picture_data=examples/herbarium/whatsnew.csv
picture_host=examples/herbarium/host.json

# Reads text with escape sequences for a terminal, and prints an HTML page that looks like the terminal.
# Removes the link targets. Replaces faint text with grey text, because aha does not support faint text.
picture_page() {
  cat <<'HTML'
<!doctype html><meta charset="utf-8"><style>
body { margin: 0; padding: 22px 28px; background: #1d1f29; color: #d8dae5; }
pre { margin: 0; font: 17px/1.32 "DejaVu Sans Mono", monospace; white-space: pre-wrap; }
</style><pre>
HTML
  sed -E -e 's/\x1b]8;[^\x1b]*\x1b\\//g' -e 's/\x1b\[2m/\x1b[90m/g' | aha --no-header | picture_colors
  echo '</pre>'
}

# Replaces aha's colours with colours for a dark background.
picture_colors() {
  sed -E -e 's/filter: [^;]*;color:white;background-color:blue;/color:#1d1f29;background:#82aaff;/g' \
    -e 's/filter: [^;]*;color:blue;/color:#82aaff;/g' \
    -e 's/filter: [^;]*;color:(dimgray|black|gray);/color:#7f8496;/g' -e 's/purple/#c792ea/g' \
    -e 's/color:red;/color:#ff757f;/g'
}

# take_screenshot PAGE PICTURE SIZE SCALE PROFILE: writes a screenshot of the top of the HTML file PAGE to
# PICTURE. SIZE is WIDTH,HEIGHT. PROFILE is a folder for the settings of the browser.
take_screenshot() {
  say "Writing $picture_folder/$2"
  chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run \
    --disable-background-networking --disable-component-update --disable-sync \
    --user-data-dir="$5" --force-device-scale-factor="$4" --hide-scrollbars \
    --window-size="$3" --screenshot="$picture_folder/$2" "file://$1" \
    >"$(log_file picture)" 2>&1 || fail "cannot write the picture; see build/log/picture.log"
}

# write_terminal_picture FOLDER NAME COLUMNS LINES: writes the picture NAME.png of a terminal that shows
# the text of standard input. FOLDER is a temporary folder.
write_terminal_picture() {
  local folder=$1 name=$2 columns=$3 lines=$4 size
  picture_page >"$folder/$name.html"
  size=$((columns * 1024 / 100 + 56)),$((lines * 2244 / 100 + 44))
  take_screenshot "$folder/$name.html" "$name.png" "$size" 1 "$folder/profile"
}

# Writes the pictures of `ornwhatsnew show` and `ornwhatsnew lint` in a terminal. Shortens the panel with
# sed instead of head, because `show` fails if its reader exits early.
write_terminal_pictures() {
  local folder=$1 program=$PWD/build/release/bin/ornwhatsnew host=$PWD/examples/author/host.json
  local columns=84 lines=39
  "$program" show "$picture_data" --host "$picture_host" --only-new --platform --relevant-versions \
    --state :memory: --color always --width "$columns" | sed "$((lines + 1)),\$d" |
    write_terminal_picture "$folder" terminal "$columns" "$lines"

  "$program" import examples/author/table.csv -o "$folder/draft.csv" 2>/dev/null
  # Run lint in the folder of the file, so that the findings contain only the file name. The exit status of
  # lint is 1, because the file has mistakes.
  { (cd "$folder" && "$program" lint draft.csv --host "$host" --color always) || (($? == 1)); } |
    write_terminal_picture "$folder" lint 96 26
}

# Writes a picture of the page that `ornwhatsnew preview` creates.
write_preview_picture() {
  local folder=$1
  build/release/bin/ornwhatsnew preview "$picture_data" --host "$picture_host" \
    --seen examples/herbarium/earlier.csv -o "$folder/preview.html"
  take_screenshot "$folder/preview.html" preview.png 1200,800 1 "$folder/profile"
}

# write_panel_picture FOLDER NAME COLORS SCALE [OPTION...]: writes the picture NAME.png of the window of
# ornwhatsnew-panel. Uses settings and a state store in FOLDER.
write_panel_picture() {
  local folder=$1 name=$2 colors=$3 scale=$4
  shift 4
  say "Writing $picture_folder/$name.png"
  QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=$scale QT_LOGGING_RULES=default.warning=false \
    XDG_CONFIG_HOME=$folder/config XDG_RUNTIME_DIR=$folder LC_ALL=C.UTF-8 \
    PANEL_PICTURE=$picture_folder/$name.png PANEL_COLORS=$colors \
    build/release/bin/panel_picture "$picture_data" --host "$picture_host" "$@" ||
    fail "cannot write the picture '$name'"
}

# Writes screenshots of the panel's window with each of its two pages, in light and dark colours, for
# screens with the scale factors 1 and 2.
write_panel_pictures() {
  local folder=$1 colors scale suffix
  # Mark all features as seen in this state store, because the rating page shows only features that the
  # user has seen.
  build/release/bin/ornwhatsnew show "$picture_data" --host "$picture_host" --state "$folder/seen.json" \
    >/dev/null
  for colors in light dark; do
    for scale in 1 2; do
      suffix=$colors
      if ((scale > 1)); then suffix+="@${scale}x"; fi
      write_panel_picture "$folder" "panel-$suffix" "$colors" "$scale" --state :memory:
      write_panel_picture "$folder" "ratings-$suffix" "$colors" "$scale" --rating \
        --state "$folder/seen.json"
    done
  done
}

command_picture() {
  no_arguments picture "$@"
  ensure_packages picture
  configure release
  say "Building the programs in build/release (first time: 3 to 5 minutes on two cores)"
  build release --target ornwhatsnew_program panel_picture
  local folder
  folder=$(mktemp -d)
  write_terminal_pictures "$folder"
  write_preview_picture "$folder"
  write_panel_pictures "$folder"
  rm -rf "$folder"
}
