#!/usr/bin/env bash
# checkImports.sh OBJDUMP LIBRARY: the library exports openConduit alone, and imports what it may and nothing else.
set -euo pipefail

tables=$("$1" -p "$2")
failed=0
expect() { # WHAT EXPECTED ACTUAL
    [ "$2" = "$3" ] && return
    printf '%s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
    failed=1
}

# The ordinals or names that are imported from a library, in one line.
imports() {
    awk -v library="$1" '
        $1 == "DLL" { inside = $3 == library; next }
        inside && NF == 0 { inside = 0 }
        inside && $1 ~ /^[0-9a-f]+$/ { print ($3 == "<none>" ? $2 : $3) }' <<<"$tables" | sort | xargs
}

names=$(awk '/Ordinal\/Name Pointer\] Table/ { inside = 1; next } inside && NF == 0 { exit } inside { print $NF }' <<<"$tables")
expect "Exports" "openConduit" "$(xargs <<<"$names")"

libraries=$(awk '$1 == "DLL" { print $3 }' <<<"$tables" | sort | xargs)
expect "Libraries" "HSLOG20.dll KERNEL32.dll SYNC20.dll USER32.dll VERSION.dll msvcrt.dll" "$libraries"

expect "The HotSync log, by ordinal" "50 51 52" "$(imports HSLOG20.dll)"
expect "Windows and keys" "GetAsyncKeyState LoadStringA" "$(imports USER32.dll)"
expect "Version records" "GetFileVersionInfoA VerQueryValueA" "$(imports VERSION.dll)"
# All of its functions but SyncYieldCycles, which only a class that nobody uses yet would call.
expect "The Sync Manager, by name" "$(xargs <<END
SyncCallRemoteModule SyncCloseDBEx SyncCreateDB SyncDeleteDB SyncDeleteRec SyncFindDbByTypeCreator SyncGetAPIVersion
SyncGetDBRecordCount SyncGetHHOSVersion SyncHHToHostDWord SyncHHToHostWord SyncHostToHHDWord SyncHostToHHWord SyncOpenDB
SyncPurgeDeletedRecs SyncReadAppPreference SyncReadDBAppInfoBlock SyncReadNextModifiedRec SyncReadNextRecInCategory
SyncReadRecordById SyncReadRecordByIndex SyncReadSysDateTime SyncResetRecordIndex SyncResetSyncFlags
SyncWriteDBAppInfoBlock SyncWriteRec
END
)" "$(imports SYNC20.dll)"
exit $failed
