#!/usr/bin/env bash
# The README's command table and python/qz7740_commands.py are what the program's command
# table prints; a difference is shown and fails.
set -euo pipefail
tool=$1
root=$2
fail=0
readme_table=$(sed -n '/<!-- commands: begin -->/,/<!-- commands: end -->/p' "$root/README.md" | sed '1d;$d')
if ! diff <(printf '%s\n' "$readme_table") <("$tool" markdown); then
  echo "README.md's command table differs from the program's: run '$tool markdown' and put its output between the markers" >&2
  fail=1
fi
if ! diff "$root/python/qz7740_commands.py" <("$tool" python); then
  echo "python/qz7740_commands.py differs from the program's table: $tool python > python/qz7740_commands.py" >&2
  fail=1
fi
exit $fail
