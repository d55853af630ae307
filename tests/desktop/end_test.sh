# Asks a running desktop program to end, as soon as it listens; it has to end well.
set -eu
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# A thread of the toolkit may still be ending when the program exits, and its memory would count as
# a leak. The tests of the windows look for leaks after their threads have ended.
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
