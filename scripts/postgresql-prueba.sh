#!/usr/bin/env bash
# A throw-away PostgreSQL server on loopback for the tests. Meant to be sourced:
#   source scripts/postgresql-prueba.sh && pg_prueba_arrancar
# exports PRAMELVIX_TEST_PG and registers pg_prueba_parar to run on exit.
PG_BIN=${PG_BIN:-/usr/lib/postgresql/15/bin}

_pg_como() {
  if [[ $(id -u) -eq 0 ]]; then runuser -u postgres -- "$@"; else "$@"; fi
}

pg_prueba_arrancar() {
  if [[ ! -x "$PG_BIN/initdb" ]]; then
    echo "AVISO: no se encuentra PostgreSQL en $PG_BIN; las pruebas sobre PostgreSQL se omitirán." >&2
    return 0
  fi
  PG_PRUEBA_DIR=$(mktemp -d /tmp/pramelvix-pg.XXXXXX)
  chmod 755 "$PG_PRUEBA_DIR"
  [[ $(id -u) -eq 0 ]] && chown postgres: "$PG_PRUEBA_DIR"
  local puerto=55432
  while (exec 3<>"/dev/tcp/127.0.0.1/$puerto") 2>/dev/null; do puerto=$((puerto + 1)); done
  _pg_como "$PG_BIN/initdb" -D "$PG_PRUEBA_DIR/datos" -A trust -U postgres -E UTF8 --locale=C.UTF-8 \
    --no-sync >"$PG_PRUEBA_DIR/initdb.log" 2>&1 || { cat "$PG_PRUEBA_DIR/initdb.log" >&2; return 1; }
  _pg_como "$PG_BIN/pg_ctl" -D "$PG_PRUEBA_DIR/datos" -w -l "$PG_PRUEBA_DIR/servidor.log" \
    -o "-p $puerto -k $PG_PRUEBA_DIR -c listen_addresses=127.0.0.1 -c fsync=off -c synchronous_commit=off -c full_page_writes=off -c max_connections=300" \
    start >/dev/null || { cat "$PG_PRUEBA_DIR/servidor.log" >&2; return 1; }
  export PRAMELVIX_TEST_PG="host=127.0.0.1 port=$puerto user=postgres"
  trap pg_prueba_parar EXIT
  echo "PostgreSQL de prueba en 127.0.0.1:$puerto"
}

pg_prueba_parar() {
  [[ -n "${PG_PRUEBA_DIR:-}" && -d "$PG_PRUEBA_DIR" ]] || return 0
  _pg_como "$PG_BIN/pg_ctl" -D "$PG_PRUEBA_DIR/datos" -m immediate stop >/dev/null 2>&1 || true
  rm -rf "$PG_PRUEBA_DIR"
  PG_PRUEBA_DIR=
}
