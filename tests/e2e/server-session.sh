# Sourced: an instrument that an installed driver server offers, asked by a program over loopback.
# Usage: session_over_server SERVER_PROGRAM CLIENT_PROGRAM FOLDER_FOR_LOGS
session_over_server() {
  local server=$1 client=$2 logs=$3 process address
  # A file and not a pipe: the server lives longer than any reader.
  "$server" --insecure --listen 127.0.0.1 --port 0 > "$logs/server.out" 2> "$logs/server.log" &
  process=$!
  for _ in $(seq 100); do
    grep -q 'listening on' "$logs/server.out" && break
    kill -0 "$process" 2> /dev/null || break
    sleep 0.1
  done
  address=$(sed -n 's/^tarvik-driver-server: listening on //p' "$logs/server.out")
  [ -n "$address" ] || { echo "the server does not listen" >&2; cat "$logs/server.log" >&2; return 1; }

  timeout 60 "$client" "tarvik+insecure://$address" > "$logs/client.out" 2> "$logs/client.err" ||
    { echo "no session over the server" >&2; cat "$logs/client.err" "$logs/server.log" >&2; kill "$process"; return 1; }
  kill -TERM "$process"
  wait "$process" || { echo "the server did not stop as it should" >&2; cat "$logs/server.log" >&2; return 1; }
  grep -q 'KolvenAtl\.Kolven' "$logs/server.log" ||
    { echo "the server made no driver" >&2; cat "$logs/server.log" >&2; return 1; }
}
