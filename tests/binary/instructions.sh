#!/usr/bin/env bash
# instructions.sh "OBJECTS" LIBRARY...: the libraries hold instructions of the first x86-64 processors only. So says what
# the assembler noted in each object file, with NOTED=1 (gcc's assembler does), and so does the disassembly.
set -euo pipefail
IFS=';' read -ra objects <<<"$1"
shift

failed=0
for object in "${objects[@]}"; do
  notes=$(readelf -n "$object")
  grep -q 'x86 feature: IBT, SHSTK' <<<"$notes" || { echo "$object lacks marks of control-flow protection"; failed=1; }
  used=$(grep -oP 'x86 (ISA|feature) used: \K.*' <<<"$notes" | tr -s ', ' '\n\n' | sort -u || true)
  beyond=$(grep -vxE 'x86|XMM|CMOV|SSE2?|x86-64-baseline|<None>' <<<"$used" || true)
  [ -z "$beyond" ] || { echo "$object uses ${beyond//$'\n'/, }"; failed=1; }
  [ -z "${NOTED-}" ] || [ -n "$used" ] || { echo "$object has no notes on what it uses"; failed=1; }
done

# Not among them: rcpps, rsqrtps and their kin, whose results differ between processors. tzcnt is bsf to a processor that
# does not know it, with the same result for what compilers use it for.
condition='n?([abceglopsz]|[abgl]e)'
allowed="
  j$condition|set$condition|cmov$condition[wlq]?
  j(mp|[er]?cxz)|call|ret|push|pop|leave|nop[wl]?|endbr64|ud2|c(wtl|ltq|ltd|qto|btw)|xchg|bswap|bs[fr]|tzcnt|movs|stos
  (mov|add|adc|sub|sbb|and|or|xor|cmp|test|not|neg|inc|dec|mul|imul|div|idiv|sh[lr]d?|sar|ro[lr]|bt[scr]?)[bwlq]?
  lea|movabs|movs[bw][wlq]|movslq|movz[bw][wlq]|prefetch(t[012]|nta)|[lms]fence
  mov([dq]|dq[au]|[au]p[sd]|[hl]p[sd]|hlps|lhps|s[sd]|mskp[sd]|nt(i|dq|p[sd]))
  (add|sub|mul|div|min|max|sqrt)[ps][sd]|(and|andn|or|xor|unpck[lh]|shuf)p[sd]|cmp(eq|lt|le|unord|neq|nlt|nle|ord)[ps][sd]
  u?comis[sd]|cvt(dq2p[sd]|t?p[sd]2dq|ps2pd|pd2ps|ss2sd|sd2ss|si2s[sd][lq]?|t?s[sd]2si)
  p(add|sub)(u?s[bw]|[bwdq])|pmul(lw|hu?w|udq)|pmaddwd|psadbw|pavg[bw]|p(min|max)(ub|sw)|pcmp(eq|gt)[bwd]|p(and|andn|or|xor)
  ps[lr]l([wdq]|dq)|psra[wd]|punpck[lh](bw|wd|dq|qdq)|pack(ss(wb|dw)|uswb)|pshuf(d|[lh]w)|p(ins|ext)rw|pmovmskb"
allowed=$(tr -s ' \n' '|' <<<"$allowed" | sed 's/^|//; s/|$//')

for library in "$@"; do
  code=$(objdump -dw --no-show-raw-insn "$library" | sed -nE 's/^ *[0-9a-f]+:\t((rep|repz|repnz|data16|cs|ds|lock) )*//p')
  [ "$(wc -l <<<"$code")" -ge 10 ] || { echo "$library: nothing to read"; failed=1; }
  beyond=$(grep -vE "^($allowed)( |\$)" <<<"$code" || true)
  beyond+=$'\n'$(grep -E '%([yz]mm|mm|st|k[0-7])' <<<"$code" || true)
  [ -z "${beyond//$'\n'}" ] || { echo "$library:"; sort <<<"$beyond" | uniq -c; failed=1; }
done
exit $failed
