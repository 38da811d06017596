#!/bin/sh
# SPDX-License-Identifier: MIT
# Makes the empty password file that is supplied with the program: data/make_password_file.sh [FILE]
# The file is an SQLite database in spite of its name; it is kept in the repository, so this is needed only when the
# table changes. Needs the sqlite3 command.
set -eu
file=${1:-$(dirname "$0")/EDPasswords.mdb}
new=$file.new
rm -f "$new"
sqlite3 "$new" 'PRAGMA page_size = 4096; CREATE TABLE EncDecPasswords (Password text, Active boolean);'
mv "$new" "$file"
