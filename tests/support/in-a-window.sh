#!/bin/sh
# Runs a test program in windows of an X server of its own, under a window manager that gives the focus as a desktop does.
for tool in xvfb-run openbox xdotool; do
  command -v "$tool" >/dev/null || { echo "not installed: $tool"; exit 77; }
done
export QT_QPA_PLATFORM=xcb
exec xvfb-run --auto-servernum --server-args="-screen 0 1280x1024x24" sh -c '
  openbox & manager=$!
  # Windows that come before it answers are placed and given the focus twice.
  until xdotool get_desktop >/dev/null 2>&1; do sleep 0.1; done
  "$@"; code=$?
  kill "$manager"
  exit "$code"' in-a-window "$@"
