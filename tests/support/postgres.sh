#!/usr/bin/env bash
# A PostgreSQL server for the tests, on a port of its own on loopback and in a temporary folder:
#   postgres.sh start STATE   writes STATE, a file with the folder and a connect string
#   postgres.sh stop STATE
# Without PostgreSQL `start` says so in STATE, and outside of continuous integration that is no
# failure: the tests are skipped.
set -euo pipefail

state=$2

# The server refuses to run as root.
unprivileged() {
  if ((EUID == 0)); then
    (cd / && runuser -u postgres -- "$@")
  else
    "$@"
  fi
}

programs() {
  local folder
  for folder in $(compgen -G '/usr/lib/postgresql/*/bin' | sort -Vr) \
    $(dirname "$(command -v pg_ctl || echo /none/none)"); do
    [[ ! -x $folder/initdb ]] || { echo "$folder"; return; }
  done
}

free_port() {
  local port
  for port in $(shuf -i 20000-32000 -n 50); do
    (: <"/dev/tcp/127.0.0.1/$port") 2>/dev/null || { echo "$port"; return; }
  done
}

start() {
  local bin folder port
  bin=$(programs)
  if [[ -z $bin ]]; then
    echo "missing: PostgreSQL is not installed (packages postgresql and odbc-postgresql)" >"$state"
    cat "$state"
    [[ ${CI:-} != true ]]
    return
  fi
  folder=$(mktemp -d)
  port=$(free_port)
  echo 'se;cr}et' >"$folder/password"
  ((EUID != 0)) || chown -R postgres "$folder"
  printf '%s\n' "$folder" >"$state"
  unprivileged "$bin/initdb" -D "$folder/data" -U poker -A scram-sha-256 -E UTF8 --locale=C.UTF-8 \
    --no-sync --pwfile="$folder/password" >"$folder/log"
  unprivileged "$bin/pg_ctl" -D "$folder/data" -w -l "$folder/server.log" -o \
    "-c listen_addresses=127.0.0.1 -p $port -c unix_socket_directories=$folder -c fsync=off" \
    start >/dev/null
  printf '%s\n' "Driver={PostgreSQL Unicode};Server=127.0.0.1;Port=$port;Uid=poker" \
    "$bin" >>"$state"
}

stop() {
  local folder bin
  folder=$(sed -n 1p "$state")
  bin=$(sed -n 3p "$state")
  [[ -z $bin ]] || unprivileged "$bin/pg_ctl" -D "$folder/data" -m immediate stop >/dev/null
  [[ $folder != /tmp/* && $folder != "${TMPDIR:-/tmp}"/* ]] || rm -rf "$folder"
  rm -f "$state"
}

"$1"
