#!/usr/bin/env bash
# pokermath db: lists, queries in three forms, scripts, and what goes wrong.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"
unset POKERMATH_CONNECT
connect="Driver=SQLite3;Timeout=200;Database=$work/hands.db;Pwd=sesame;"

# Whatever is said, the password is not in it.
said=
eval "plain_$(declare -f run)"
run() {
  plain_run "$@"
  said+=$out$err
}

cat >"$work/good.sql" <<'SQL'
-- A semicolon; in a comment
CREATE TABLE hands_1 (id integer NOT NULL, name varchar(20), won double, day date, seen blob);
CREATE TABLE log (n integer);
/* another; one */ CREATE TRIGGER t AFTER INSERT ON hands_1 BEGIN
  INSERT INTO log VALUES (CASE WHEN 1 THEN 1 END); INSERT INTO log VALUES (2);
END;
INSERT INTO hands_1 VALUES (5000000000, 'a;b''"€,', 0.1, '2024-02-29', x'00ff');
INSERT INTO hands_1 VALUES (2, '', NULL, NULL, NULL);
-- the end
SQL
run db exec "$work/good.sql" --connect "$connect"
expect_code 0
same "$asked" "$out" "5 statements executed"
run db query 'SELECT count(*) AS n FROM log' --connect "$connect" --csv
same "$asked" "$out" $'n\n4'

run db tables --connect "$connect"
same "$asked" "$out" $'hands_1\nlog'
run db columns hands_1 --connect "$connect"
has "$asked" "$out" "id                       INTEGER not null"
POKERMATH_CONNECT=$connect run db columns hands_1 --json
has "$asked" "$out" '{"name":"name","type":"varchar(20)","nullable":true}'
run db drivers
has "$asked" "$out" SQLite3

run db query 'SELECT * FROM hands_1' --connect "$connect"
same "$asked" "$out" "        id  name      won  day         seen
5000000000  a;b'\"€,   0.1  2024-02-29  00ff
         2           NULL  NULL        NULL

2 rows"
run db query 'SELECT * FROM hands_1' --connect "$connect" --csv
same "$asked" "$out" 'id,name,won,day,seen
5000000000,"a;b'"'"'""€,",0.1,2024-02-29,00ff
2,"",,,'
run db query 'SELECT id, name, name AS Name, won FROM hands_1' --connect "$connect" --json
same "$asked" "$out" '{"schema":1,"row":{"id":5000000000,"name":"a;b'"'"'\"€,","Name2":"a;b'"'"'\"€,","won":0.1}}
{"schema":1,"row":{"id":2,"name":"","Name2":"","won":null}}'
run db query 'SELECT * FROM hands_1 WHERE id = 77' --connect "$connect" --json
expect_code 0
same "$asked" "$out" ""
refuses 1 "the query failed: " db query "DELETE FROM log" --connect "$connect"
printf 'BEGIN; DELETE FROM log;' >"$work/open.sql"
refuses 1 "open.sql' ends inside a transaction: COMMIT is missing" db exec "$work/open.sql" --connect "$connect"
run db query 'SELECT count(*) AS n FROM log' --connect "$connect" --csv
same "$asked" "$out" $'n\n4'
printf 'BEGIN; SAVEPOINT x; DELETE FROM log; ROLLBACK TO x; DELETE FROM log; commit;' >"$work/done.sql"
run db exec "$work/done.sql" --connect "$connect"
same "$asked" "$out" "6 statements executed"

# The first bad statement ends a script; those before it stay.
printf 'INSERT INTO log VALUES (7);\n\nINSERT INTO\n none VALUES (1);INSERT INTO log VALUES (8)' \
  >"$work/bad.sql"
refuses 1 "bad.sql', line 3: statement 2 of 3 failed: " db exec "$work/bad.sql" --connect "$connect"
run db query 'SELECT n FROM log' --connect "$connect" --csv
same "$asked" "$out" $'n\n7'

# Transactions that a savepoint begins, or that go on.
for script in 'SAVEPOINT x; DELETE FROM log;' 'BEGIN; SAVEPOINT x; ROLLBACK TRANSACTION TO x;' \
  'SAVEPOINT x; SAVEPOINT x; DELETE FROM log; RELEASE x;'; do
  printf %s "$script" >"$work/open.sql"
  refuses 1 "ends inside a transaction" db exec "$work/open.sql" --connect "$connect"
done
printf 'SAVEPOINT "x"; SAVEPOINT y; RELEASE y; RELEASE x; BEGIN; COMMIT TRANSACTION' >"$work/done.sql"
run db exec "$work/done.sql" --connect "$connect"
same "$asked" "$out" "6 statements executed"

# A connect string in the wrong place.
refuses 1 "cannot read 'Driver=x;Pwd=***'" db exec 'Driver=x;Pwd=sesame' --connect "$connect"
refuses 1 "there is no table 'x***x'" db columns xsesamex --connect "$connect"

# A backslash before a quote.
printf "INSERT INTO log VALUES (9); SELECT E'it\\\\'s;''\\\\';' || ';'; x" >"$work/escape.sql"
refuses 1 "statement 2 of 3 failed: " db exec "$work/escape.sql" --connect "$connect"

run db exec - --connect "$connect" <&-
expect_code 1
same "$asked" "$out$err" "pokermath: cannot read standard input: Bad file descriptor"
refuses 1 "no such table: none" db query 'SELECT * FROM none' --connect "$connect"
refuses 1 "there is no table 'hands__'" db columns hands__ --connect "$connect"
refuses 1 "cannot open the database: " db tables --connect "Driver=none;Pwd=sesame"
refuses 1 "cannot read '$work/none': No such file" db exec "$work/none" --connect "$connect"
refuses 1 "cannot read '$work': Is a directory" db exec "$work" --connect "$connect"
refuses 2 "--connect is required" db tables
refuses 2 "Pwd=***' is one word too many" db tables --connect x "Driver=none;Pwd=sesame"
refuses 2 "exclude each other" db query x --connect "$connect" --csv --json
refuses 2 "a subcommand is missing: drivers, tables, columns, query, exec" db
refuses 1 "***" db query 'SELECT sesame' --connect "$connect"

# More rows than are kept at a time, and an end in the middle of them.
rows='WITH RECURSIVE r(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM r WHERE n < 2500) SELECT n FROM r'
run db query "$rows" --connect "$connect"
has "$asked" "$out" $'\n2500\n\n2500 rows'

[[ $said == *hands_1* && $said != *sesame* ]] || fail "a password was printed"

finish
