#!/usr/bin/env bash
# play_keys.sh TOOL: plays a stream in a window of the X server that DISPLAY names, presses keys and looks at the
# title and at the screen.
set -euo pipefail
tool=$1 place=$(mktemp -d) player=
trap '[[ -z $player ]] || kill "$player"; rm -r "$place"' EXIT
fail() { echo "$*"; exit 1; }

ffmpeg -v error -f lavfi -i testsrc=s=176x144 -frames:v 120 -pix_fmt yuv420p "$place/clip.y4m"
"$tool" h261 encode "$place/clip.y4m" "$place/clip.h261" --search 2 >/dev/null
SDL_VIDEODRIVER=x11 "$tool" play "$place/clip.h261" --zoom 3 &
player=$!
window=$(timeout 20 xdotool search --sync --onlyvisible --name '^clip.h261')
for ((i = 0; i < 200; i++)); do
  [[ $(xdotool getwindowfocus) == "$window" ]] && break
  sleep 0.05
done

expect_title() {  # PATTERN: waits for such a title
  local i
  for ((i = 0; i < 300; i++)); do
    title=$(xdotool getwindowname "$window")
    # shellcheck disable=SC2053
    [[ $title == $1 ]] && return
    sleep 0.05
  done
  fail "The title is '$title', not '$1'."
}

expect_title 'clip.h261 - [23]?.? frames/s, 0.??? ms to convert'
xdotool key space
expect_title 'clip.h261 - picture *, paused*'
number=${title#*picture } number=${number%%,*}
xdotool key Right
expect_title "clip.h261 - picture $((number + 1)), paused, 0.??? ms to convert"
xdotool key Left Left
expect_title "clip.h261 - picture $((number - 1)), paused, 0.??? ms to convert"

eval "$(xdotool getwindowgeometry --shell "$window")"
[[ $WIDTH,$HEIGHT == 528,432 ]] || fail "The window is $WIDTH x $HEIGHT."
ffmpeg -v error -f x11grab -draw_mouse 0 -video_size 528x432 -i "$DISPLAY+$X,$Y" -frames:v 1 -pix_fmt rgb24 "$place/seen.ppm"
"$tool" show "$place/clip.h261" "$place/expected.ppm" --frame $((number - 1)) --zoom 3
cmp "$place/seen.ppm" "$place/expected.ppm"

xdotool key space
expect_title 'clip.h261 - picture 119, end*'
xdotool key Left
expect_title 'clip.h261 - picture 118, paused*'
xdotool key q
wait "$player" || fail "It ended with status $?."
player=
