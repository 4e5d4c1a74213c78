#!/usr/bin/env bash
# Runs the tests of bits and kernels for AVX-512 on a machine without it. Debian's kernel boots in Bochs, which emulates
# such a CPU, and runs these tests.
# Usage: avx512.sh FOLDER_OF_PROGRAMS UNPACKED_KERNEL SCRATCH
set -euo pipefail
cd "$(dirname "$0")/.."
programs=$(realpath "$1")
kernel=$(realpath "$2")
mkdir -p "$3"
scratch=$(realpath "$3")
seconds=3600  # the tests take some twelve minutes

# Bochs has no exact arc tangent of the x87, with which some tests compare phases; the bits of phases are among the bits.
phases='KernelTransferFunction.IsThatOfThePsf*:KernelTransferFunction.OfEyes*:KernelTransferFunction.OfPlanes*'

rm -rf "$scratch/root" "$scratch/disc" "$scratch/serial.txt"
mkdir -p "$scratch"/{root/{bin,proc,dev,tmp,lib64,lib/x86_64-linux-gnu},disc/boot/grub}
cp "$kernel"/boot/vmlinuz-* "$scratch/disc/boot/kernel"

# All files that the tests read, where they look for them; and a first process that runs the tests.
cp /bin/busybox "$programs"/orvanel_{golden,optics,models}_tests "$scratch/root/bin"
cp -L /lib64/ld-linux-x86-64.so.2 "$scratch/root/lib64"
cp -L /lib/x86_64-linux-gnu/{libstdc++.so.6,libm.so.6,libgcc_s.so.1,libc.so.6} "$scratch/root/lib/x86_64-linux-gnu"
mkdir -p "$scratch/root$PWD/tests"
cp -r --parents tests/golden assets "$scratch/root$PWD"
cat >"$scratch/root/init" <<END
#!/bin/busybox sh
busybox mount -t proc proc /proc
busybox mount -t devtmpfs dev /dev
busybox grep -q avx512dq /proc/cpuinfo || echo "no AVX-512 here"
orvanel_golden_tests --gtest_color=no --gtest_brief=1 --gtest_filter='*/avx512'
echo "bits: \$?"
orvanel_optics_tests --gtest_color=no --gtest_brief=1 --gtest_filter='Kernel*/avx512-$phases'
echo "kernels: \$?"
orvanel_models_tests --gtest_color=no --gtest_brief=1 --gtest_filter='PhasePlane.*/avx512:KeptResults.*/avx512'
echo "engine: \$?"
busybox sleep 1000000
END
chmod +x "$scratch/root/init"
(cd "$scratch/root" && find . | cpio --quiet -o -H newc | gzip -1 >"$scratch/disc/boot/root")

# Bochs tells a size of its compacted states that the kernel does not believe: the kernel leaves them.
cat >"$scratch/disc/boot/grub/grub.cfg" <<'END'
set timeout=0
menuentry tests {
  linux /boot/kernel console=ttyS0 quiet rdinit=/init noapic mitigations=off tsc=reliable clearcpuid=xsavec,xsaves
  initrd /boot/root
}
END
grub-mkrescue -o "$scratch/disc.iso" "$scratch/disc" >"$scratch/grub.log" 2>&1
cat >"$scratch/bochsrc" <<END
cpu: model=corei7_skylake_x, ips=50000000, reset_on_triple_fault=0, ignore_bad_msrs=1
memory: guest=512, host=512
romimage: file=/usr/share/bochs/BIOS-bochs-latest
vgaromimage: file=/usr/share/vgabios/vgabios.stdvga.bin
display_library: rfb, options="timeout=0"
ata0: enabled=1, ioaddr1=0x1f0, ioaddr2=0x3f0, irq=14
ata0-master: type=cdrom, path="$scratch/disc.iso", status=inserted
boot: cdrom
com1: enabled=1, mode=file, dev="$scratch/serial.txt"
log: "$scratch/bochs.log"
panic: action=fatal
clock: sync=none
END
echo c >"$scratch/start"  # to its debugger

# It offers its screen to whoever connects; what counts comes by the serial line.
timeout $seconds bochs -q -f "$scratch/bochsrc" -rc "$scratch/start" </dev/null >"$scratch/screen" 2>&1 &
emulator=$!
trap 'kill $emulator 2>/dev/null' EXIT
until grep -qa '^engine: [0-9]' "$scratch/serial.txt" 2>/dev/null; do
  kill -0 $emulator 2>/dev/null || { echo "Bochs ended; see $scratch/bochs.log" >&2; exit 1; }
  sleep 2
done
tr -d '\r' <"$scratch/serial.txt" | grep -aE '^\[ *(=|PASSED|FAILED)|Failure|no AVX-512|^bits|^kernels|^engine'
if grep -qa 'no AVX-512' "$scratch/serial.txt"; then exit 1; fi
grep -qa '^bits: 0' "$scratch/serial.txt"
grep -qa '^kernels: 0' "$scratch/serial.txt"
grep -qa '^engine: 0' "$scratch/serial.txt"
