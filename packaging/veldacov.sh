#!/bin/sh
# Starts the program of this package. Without NORVIKDIR, the package's own tree is the installation directory.
: "${NORVIKDIR=/usr/lib/norvik}"
export NORVIKDIR
exec /usr/lib/norvik/bin/veldacov "$@"
