#!/bin/sh
# Makes a small set of certificates for trying and testing the driver server:
#
#   ca.pem, ca.key            the authority that signs the others
#   server.pem, server.key    the server, for localhost, 127.0.0.1, ::1 and the host names given
#   client.pem, client.key    a client named "bench"
#   stranger.pem, .key        a client of the same authority, named "stranger"
#   expired.pem, .key         a client named "bench" whose certificate has run out
#   foreign.pem, .key         a client named "bench" that another authority signed
#   expired-server.pem, .key  the server, with a certificate that has run out
#   foreign-server.pem, .key  the server, signed by another authority
#   elsewhere.pem, .key       a server of another name, elsewhere.example
#   revocations.pem           a revocation list of the authority that names client.pem
#
# Usage: make-test-certificates.sh FOLDER [HOST...]
#
# The keys are not protected and last 30 days: not for instruments that others can reach.
set -eu
[ $# -ge 1 ] || { sed -n '2,18s/^# \{0,1\}//p' "$0" >&2; exit 2; }
folder=$1
shift
mkdir -p "$folder"
cd "$folder"
umask 077

names="DNS:localhost,IP:127.0.0.1,IP:::1"
for host in "$@"; do names="$names,DNS:$host"; done

authority() { # FILE NAME
  openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 30 -keyout "$1.key" -out "$1.pem" \
    -subj "/CN=$2" -addext "basicConstraints=critical,CA:TRUE" -addext "keyUsage=critical,keyCertSign,cRLSign" 2>/dev/null
}

register() { # an empty register of what the authority has signed
  rm -rf work
  mkdir work
  : > work/index
  printf '[ca]\ndefault_ca=d\n[d]\ndatabase=work/index\nnew_certs_dir=work\nrand_serial=yes\ndefault_md=sha256\npolicy=p\n[p]\ncommonName=supplied\n' > work/ca.cnf
}

signed() { # FILE NAME AUTHORITY USAGE NAMES [OPTIONS OF ca]
  file=$1 name=$2 signer=$3 usage=$4 alternatives=$5
  shift 5
  openssl req -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -keyout "$file.key" -out "$file.csr" \
    -subj "/CN=$name" 2>/dev/null
  printf 'basicConstraints=CA:FALSE\nextendedKeyUsage=%s\nsubjectAltName=%s\n' "$usage" "$alternatives" > "$file.ext"
  register
  openssl ca -batch -notext -config work/ca.cnf -cert "$signer.pem" -keyfile "$signer.key" -in "$file.csr" \
    -extfile "$file.ext" -out "$file.pem" "$@" 2>/dev/null
  rm -rf work "$file.csr" "$file.ext"
}

authority ca "Tarvik test authority"
authority other "Another authority"
signed server localhost ca serverAuth "$names" -days 30
signed client bench ca clientAuth "DNS:bench" -days 30
signed stranger stranger ca clientAuth "DNS:stranger" -days 30
signed expired bench ca clientAuth "DNS:bench" -startdate 20200101000000Z -enddate 20200201000000Z
signed foreign bench other clientAuth "DNS:bench" -days 30
signed expired-server localhost ca serverAuth "$names" -startdate 20200101000000Z -enddate 20200201000000Z
signed foreign-server localhost other serverAuth "$names" -days 30
signed elsewhere elsewhere.example ca serverAuth "DNS:elsewhere.example" -days 30
rm -f other.pem other.key
register
openssl ca -config work/ca.cnf -cert ca.pem -keyfile ca.key -revoke client.pem 2>/dev/null
openssl ca -config work/ca.cnf -cert ca.pem -keyfile ca.key -gencrl -crldays 30 -out revocations.pem 2>/dev/null
rm -rf work
