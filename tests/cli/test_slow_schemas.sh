#!/usr/bin/env bash
# Pages, questions and CSV against docs/schema/ and docs/formats.md.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"

/usr/bin/python3 "$(dirname "$0")/validate_schemas.py" "$POKERMATH" ||
  fail "pages differ from docs/schema or docs/formats.md; it needs Debian's python3-jsonschema"

finish
