#!/usr/bin/env bash
# Builds the fuzz targets and runs each for so many seconds, as many at once as there are processors.
#   run.sh SECONDS [TARGET...]      (operations, tool, jpeg, h261, h263, mpeg, y4m, pnm, png, jpeg_encoder, h261_encoder; all if
#                               none is named)
# What they learn stays in build-fuzz/corpus, how long they ran in build-fuzz/fuzzed; what they find is left in build-fuzz.
set -euo pipefail
cd "$(dirname "$0")/../.."
seconds=$1 targets=("${@:2}")
((${#targets[@]})) || targets=(operations tool jpeg h261 h263 mpeg y4m pnm png jpeg_encoder h261_encoder)

cmake --preset fuzz -G Ninja >/dev/null
cmake --build build-fuzz --target pqxvideo mpeg_seeds "${targets[@]/%/_fuzz}"

# Small files of every kind to begin with, made by the tool.
cd build-fuzz
mkdir -p corpus/{operations,tool,jpeg,h261,h263,mpeg,y4m,pnm,png,jpeg_encoder,h261_encoder}
{
  printf 'P6 176 144 255\n'
  LC_ALL=C awk 'BEGIN { for (i = 0; i < 3 * 176 * 144; ++i) printf "%c", 32 + int(i / 528) * (i % 7) % 90 }'
} >corpus/seed.ppm
printf 'P6#one\n3 2 255\nabcdefghijklmnopqr' >corpus/pnm/colour
printf 'P5 4 3 7\n............' >corpus/pnm/grey
printf 'YUV4MPEG2 W4 H2 F25:1 C420jpeg\nFRAME\n............FRAME X\n............' >corpus/y4m/clip
for sampling in 444 422 420; do
  ./pqxvideo jpeg encode corpus/pnm/colour "corpus/jpeg/$sampling" --sampling "$sampling" --optimize --format jpeg
done
./pqxvideo jpeg encode corpus/pnm/grey corpus/jpeg/grey --format jpeg
./pqxvideo pan corpus/seed.ppm corpus/seed.y4m --size qcif --frames 3
./pqxvideo h261 encode corpus/seed.y4m corpus/h261/clip --quant 31 --format h261 >/dev/null
for kind in colour grey; do ./pqxvideo sheet -o "corpus/png/$kind" --format png "corpus/pnm/$kind" "corpus/pnm/$kind"; done
# A file for each command of the tool, behind the two bytes that choose the command and what is closed.
k=0
for file in pnm/colour jpeg/420 jpeg/grey pnm/grey png/colour pnm/colour y4m/clip h261/clip seed.y4m h261/clip; do
  { printf "\\x$(printf %02x $k)\0"; cat "corpus/$file"; } >"corpus/tool/$k"
  k=$((k + 1))
done
# An intra picture, and one with PLUSPTYPE, Annexes D, F, I, J and T and 16 x 16 samples.
printf '\x00\x00\x80\x02\x04\x1f%0200d' 1 >corpus/h263/plain
printf '\x00\x00\x80\x02\x1c\xe5\xc3\x00\x10\x80\xe0\x49\x00%0100d' 1 >corpus/h263/plus
./tests/fuzz/mpeg_seeds corpus/mpeg
for ((k = 0; k < 160; ++k)); do
  printf "\\x$(printf %02x $k)\\0%64d" $((k * 77777)) >"corpus/operations/$k"
done

# Tells what a target did, and keeps count over all runs.
fuzz() {
  target=$1 seconds=$2 log=$1.log status=0
  "./tests/fuzz/${target}_fuzz" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 \
    "corpus/$target" >"$log" 2>&1 || { status=1 && tail -n 40 "$log"; }
  executed=$(sed -n 's/^stat::number_of_executed_units: //p' "$log")
  echo "$target $seconds ${executed:-0}" >>fuzzed
  echo "$target: ${executed:-0} executions, $(grep -o 'cov: [0-9]* ft: [0-9]*' "$log" | tail -n 1)" \
    "$(sed -n 's/.*operations reached/, &/p' "$log")"
  if [ "$target" = operations ]; then grep -q '^\([0-9]*\) of \1 operations reached' "$log" || status=1; fi
  return $status
}
export -f fuzz
status=0
printf '%s\n' "${targets[@]}" | xargs -P "$(nproc)" -I TARGET bash -c "fuzz TARGET $seconds" || status=1
awk '{ time[$1] += $2; executed[$1] += $3 }
     END { for (t in time) printf "In all runs here, %s: %.2f hours, %d executions\n", t, time[t] / 3600, executed[t] }' fuzzed
exit $status
