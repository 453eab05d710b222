#!/usr/bin/env bash
# SPDX-License-Identifier: LicenseRef-Proprietary
# Runs a command on a private X server and session bus, without a monitor, and returns its status.
#   scripts/virtual-display.sh COMMAND…
# VIRTUAL_SCREEN is the screen's size and depth, 1024x768x24 by default.
set -uo pipefail

ready=$(mktemp)
trap 'rm -f "$ready"' EXIT
# The server picks a free display number and reports it. It does not reset when its last client
# leaves: the next one could be refused meanwhile.
Xvfb -noreset -displayfd 3 -screen 0 "${VIRTUAL_SCREEN:-1024x768x24}" -nolisten tcp 3>"$ready" >/dev/null 2>&1 &
server=$!
trap 'kill "$server" 2>/dev/null; wait "$server" 2>/dev/null; rm -f "$ready"' EXIT
for _ in {1..600}; do
    [[ ! -s $ready ]] || break
    kill -0 "$server" 2>/dev/null || break
    sleep 0.1
done
if [[ ! -s $ready ]]; then
    echo "virtual-display.sh: Xvfb did not start" >&2
    exit 1
fi
unset WAYLAND_DISPLAY XAUTHORITY QT_QPA_PLATFORM
# The bus and what it starts are silent; the command keeps this script's output.
# shellcheck disable=SC2016 # expanded by the inner shell
DISPLAY=:$(<"$ready") dbus-run-session -- sh -c 'exec "$@" >&4 2>&5 4>&- 5>&-' sh "$@" \
    4>&1 5>&2 >/dev/null 2>&1
