#!/bin/sh
# Runs a test program in windows of an X server of its own, under a window manager that gives the focus as a desktop does.
for tool in Xvfb openbox xdotool; do
  command -v "$tool" >/dev/null || { echo "not installed: $tool"; exit 77; }
done

folder=$(mktemp -d)
# The server itself looks for a free number: tests that run side by side would choose the same.
mkfifo "$folder/display"
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset 3>"$folder/display" 2>/dev/null &
server=$!
read -r number <"$folder/display"
export DISPLAY=":$number" QT_QPA_PLATFORM=xcb

openbox &
manager=$!
trap 'kill "$manager" "$server"; rm -r "$folder"' EXIT
# Windows that come before it answers are placed and given the focus twice.
until xdotool get_desktop >/dev/null 2>&1; do sleep 0.1; done
"$@"
