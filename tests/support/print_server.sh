#!/bin/sh
# A print scheduler of its own in an empty folder, as long as standard input stays open.
#
#   print_server.sh FOLDER
#
# FOLDER/socket is its address; FOLDER/ready appears when it takes jobs, FOLDER/over when it ends. Its one
# queue, office, leaves each job in FOLDER/jobs: N.pdf as it came, and N.told, lines of title, copies and
# options. The printer has 75 dots per inch, A4 and A5 (its default), and margins of 18 points, below 36.
set -eu
cd "$1"
trap 'touch over' EXIT
PATH=$PATH:/usr/sbin
command -v cupsd lpadmin >/dev/null || { echo "there is no cupsd, or no lpadmin"; exit 1; }
programs=/usr/lib/cups
mkdir -p bin/backend spool cache state tmp jobs
for part in "$programs"/*; do
  [ "${part##*/}" = backend ] || ln -s "$part" bin/
done
cat >bin/backend/keep <<'END'
#!/bin/sh
[ $# -gt 0 ] || exit 0
cd "${DEVICE_URI#keep:}"
cat "${6:--}" >part
printf '%s\n' "$3" "$4" "$5" >"$1.told"
mv part "$1.pdf"
END
chmod 700 bin/backend/keep # what others may not run runs as the scheduler does
cat >cups-files.conf <<END
ServerRoot $PWD
ServerBin $PWD/bin
RequestRoot $PWD/spool
CacheDir $PWD/cache
StateDir $PWD/state
TempDir $PWD/tmp
ErrorLog $PWD/errors
AccessLog $PWD/accesses
Printcap
Sandboxing relaxed
END
cat >cupsd.conf <<END
Listen $PWD/socket
Browsing No
<Policy default>
<Limit All>
</Limit>
</Policy>
END
cat >office.ppd <<'END'
*PPD-Adobe: "4.3"
*NickName: "Keep"
*cupsFilter2: "application/pdf application/pdf 0 -"
*OpenUI *PageSize: PickOne
*DefaultPageSize: A5
*PageSize A4/A4: ""
*PageSize A5/A5: ""
*CloseUI: *PageSize
*DefaultImageableArea: A5
*ImageableArea A4/A4: "18 36 577 824"
*ImageableArea A5/A5: "18 36 402 577"
*DefaultPaperDimension: A5
*PaperDimension A4/A4: "595 842"
*PaperDimension A5/A5: "420 595"
*OpenUI *Resolution: PickOne
*DefaultResolution: 75dpi
*Resolution 75dpi/75 DPI: ""
*CloseUI: *Resolution
END
cupsd -f -c "$PWD/cupsd.conf" -s "$PWD/cups-files.conf" &
trap 'kill $!; wait; touch over' EXIT
export CUPS_SERVER="$PWD/socket"
tries=0
until lpadmin -p office -E -D 'The office' -v "keep:$PWD/jobs" -P office.ppd 2>/dev/null; do
  [ $((tries += 1)) -lt 100 ] || exit 1
  sleep 0.1
done
lpadmin -d office
touch ready
cat >/dev/null
