#!/bin/sh
# Runs the scenarios that lie beside the checkout, where there are any, and reports every difference
# between them and the copies kept here.
#
#   compare_copies.sh RUNNER OWN_FOLDER OTHER_FOLDER
#
# Exit status: 0 all well, 1 differences, 77 nothing beside the checkout.
runner=$1
own=$2
other=$3

if ! ls "$other"/*.json >/dev/null 2>&1; then
  echo "no scenarios in $other: nothing to compare"
  exit 77
fi

status=0
for file in "$own"/*.json "$other"/*.json; do
  name=$(basename "$file")
  if ! cmp "$own/$name" "$other/$name"; then
    status=1
  fi
done
if ! "$runner" --check "$other"/*.json; then
  status=1
fi
exit $status
