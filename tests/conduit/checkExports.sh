#!/usr/bin/env bash
# checkExports.sh NM LIBRARY: the library exports openConduit alone.
set -euo pipefail

exports=$("$1" --dynamic --defined-only "$2" | awk '{ print $NF }' | xargs)
[ "$exports" = openConduit ] || { echo "exported: $exports"; exit 1; }
