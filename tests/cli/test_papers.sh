#!/usr/bin/env bash
# What is said of libraries, versions and files in the project's papers.
# shellcheck source-path=SCRIPTDIR
. "$(dirname "$0")/expect.sh"
cd "$(dirname "$0")/../.." || exit 1

# Every package that is installed, asked for or linked has a licence of its own line.
licences=$(<docs/licences.md)
setup=$(<cmake/setup.sh)
# shellcheck disable=SC2016
libraries=$(grep -oP '(?s)wanted=\(\K[^"]*' <<<"${setup//$'\n'/ }")
web=$(grep -oP '\n  need_packages \K[^"]*' -z <<<"$setup" | tr -d '\\\0')
node=$(grep -oP 'node=\(\K[^)]+' <<<"$setup")
npm=$(grep -oP '"\K[^"]+(?=": "[0-9][0-9.]*",?$)' web/package.json | grep -vx rollup)
python=$(grep -oP '^dependencies = \[\K[^]]*' python/pyproject.toml | tr -d '",')
for list in "$libraries" "$web" "$node" "$npm" "$python"; do
  [[ -n ${list// /} ]] || fail "a list of packages is empty"
  for package in $list; do
    has "docs/licences.md" "$licences" "| \`$package\`"
  done
done
linked=$(readelf -d "$POKERMATH" | grep -oP 'NEEDED.*\[\K[a-z+_]+(-linux)?(?=[^]]*\])')
has "what the tool is linked with" "$linked" libodbc
for library in $linked; do
  # The C library's own, of which sanitizers take more; and what clang has in the place of libgomp.
  [[ $library == ld-linux || $library =~ ^lib(c|m|dl|rt|pthread|resolv|omp)$ ]] && continue
  has "docs/licences.md" "$licences" "$library"
done

version=$("$POKERMATH" --version)
same "version in CITATION.cff" "$(grep '^version: ' CITATION.cff)" "version: ${version#pokermath }"
same "licence in CITATION.cff" "$(grep '^license: ' CITATION.cff) License" "license: $(head -n 1 LICENSE)"

# Links to files lead somewhere.
for page in *.md docs/*.md docs/*/*.md web/lib/*.md; do
  while read -r link; do
    [[ -e $(dirname "$page")/$link ]] || fail "$page: $link is not there"
  done < <(grep -oP '\]\(\K[^)#: ]+(?=[)#])' "$page")
done

finish
