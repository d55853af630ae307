# Sends SIGTERM to a running desktop program as soon as it handles it; it must exit normally.
set -eu
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# A thread of the toolkit may still be ending when the program exits, and its memory would be
# reported as a leak. The window tests check for leaks after their threads have ended.
export ASAN_OPTIONS="${ASAN_OPTIONS:-}:detect_leaks=0"
TARN_SETTINGS=$folder "$1" &
pid=$!
listens() {
  caught=$(sed -n 's/^SigCgt:[[:space:]]*//p' "/proc/$pid/status")
  [ $((0x$caught & 1 << 14)) -ne 0 ] # the bit of SIGTERM
}
until listens; do sleep 0.1; done
kill -TERM "$pid"
wait "$pid"
