#!/usr/bin/env bash
# What the programs write about themselves: manual pages that troff has nothing to say against, and
# completions that the shells which are installed take, and that answer.
#
#   documents_test.sh WORK_FOLDER PROGRAM...
set -eu

work=$1
shift
rm -rf "$work"
for program in "$@"; do "$program" --documents "$work"; done
cd "$work"
fail() { echo "documents: $*" >&2; exit 1; }

if command -v man >/dev/null; then
  for page in man/man1/*; do
    [ -z "$(man --warnings -E UTF-8 -l -Tutf8 -Z "$page" 2>&1 >/dev/null)" ] || fail "$page has faults"
  done
fi
for script in zsh/site-functions/* fish/vendor_completions.d/*; do
  ! command -v "${script%%/*}" >/dev/null || "${script%%/*}" -n "$script"
done

. bash-completion/completions/vncore
completed() {  # WORDS..., of which the last is completed
  COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
  _vncore
  echo "${COMPREPLY[*]}"
}
touch paper.png
[ "$(completed vncore conv)" = convert ]
[ "$(completed vncore convert --dither st)" = 'stucki stevenson-arce' ]
[ "$(completed vncore convert pap)" = paper.png ]
[ "$(completed vncore convert --depth pap)" = '' ]
