#!/usr/bin/env bash
# The receiver from the command line: who it is, whether it can do a setup and what to do where it cannot, its
# configuration read and written.
set -euo pipefail
cd "$(dirname "$0")/../.."
. tests/system/expect.sh receiver_test
receivers=$root/examples/receivers
# A receiver with other entries in [Network] than full.ini: NAME LINE...
receiver() {
    local name=$1 line
    cp "$receivers/full.ini" "$name"
    shift
    for line; do
        sed -i "/^${line%%=*}=/d; s/^\[Network\]/&\n$line/" "$name"
    done
}
# A setup with other settings than setup.ini: NAME LINE...
setup() {
    local name=$1 line
    cp setup.ini "$name"
    shift
    for line; do
        sed -i "s/^${line%%=*}=.*/$line\r/" "$name"
        grep -q "^$line" "$name" || fail "$name has no ${line%%=*}"
    done
}

# Who it is.
expect_exit 0 info --network "$receivers/full.ini"
expect_match '^Serial number +200117$' '^Operating mode +4 \(DVB-C demodulator\)$' \
    '^  EXTREF +input for an external 10 MHz reference$' '^Options not installed: none$'
receiver off.ini 'Receiver Connected=No'
receiver other.ini 'Manufacturer=SOMEBODY'

# Read from the one receiver, changed and written to it.
expect_exit 0 read -o setup.ini --network "$receivers/full.ini"
expect_text 'setup.ini: 474 MHz, 6.9 MSymb/s'
expect_notice 'Reading KTR Configuration'
# Nothing else is asked of another instrument, or of none.
for command in info 'read -o unread.ini' 'write setup.ini' 'check setup.ini --receiver' 'scan setup.ini --write'; do
    expect_exit 2 $command --network off.ini
    expect_notice 'no receiver answers'
    expect_exit 2 $command --network other.ini
    expect_notice 'does not identify itself as a KTR receiver'
done
[ ! -e unread.ini ] || fail "writes a setup"
# A setup that is there keeps what no receiver knows, and any other file stays.
cp "$root/tests/data/setups/version-2.0.ini" kept.ini
expect_exit 0 read -o kept.ini --network "$receivers/full.ini"
expect_text 'kept.ini: its 6 channels stay'
grep -q '^Level Unit=dBmV' kept.ini && grep -q '^Count=6' kept.ini || fail "does not keep the channels"
expect_exit 2 read -o kept.ini --channels-too --network "$receivers/full.ini"
expect_exit 0 read -o kept.ini --channels-too --force --network "$receivers/full.ini"
expect_text 'kept.ini: 474 MHz, 6.9 MSymb/s'
expect_exit 2 read -o ./OFF.ini --force --network off.ini
expect_notice 'would replace the file that it is made from'
setup changed.ini 'Level Unit=mV' '10MHz Reference Source=1' 'Order Of QAM=128' 'Rolloff Factor=20' \
    'BER Integration (Samples)=33' 'SAW Filter Bandwidth (MHz)=2' 'Input Impedance (ohm)=4'
expect_exit 0 write changed.ini --network "$receivers/full.ini"
expect_notice 'Configuring KTR'
expect_match '^  Input route +Demod$' '^  Level unit +mV$' '^  SAW filter +2 MHz$' '^  Order of QAM +128$' \
    '^  Rolloff factor +0.20$' '^  BER samples +33$' '^  Reference +External$'
# What the receiver takes otherwise, or not at all, is said with the state that it is in then.
receiver swaps.ini 'Installed Options=KTR-H2,KTR-H4,KTR-H5,KTR-H8 (or KTR-H9),EXTREF,EAMOD,RB' 'Swaps SAW Filters=Yes'
expect_exit 1 write changed.ini --network swaps.ini
expect_notice 'taken otherwise: SAW filter: 2 MHz in the setup, Off on the receiver'
expect_match 'the receiver is set otherwise$' '^  SAW filter +Off$'
receiver lacks.ini 'Installed Options=KTR-H2,KTR-H4,KTR-H5,EXTREF,EAMOD,RB'
expect_exit 2 write changed.ini --network lacks.ini
expect_notice "This was the receiver's SAW filter. It has not been given what comes behind: order of QAM," \
    '  SAW filter      8 MHz' '  Order of QAM    64' 'write it again'
# A receiver in another operating mode is told, and read all the same.
receiver ignores.ini 'Installed Options=KTR-H5' 'Ignores Missing Modes=Yes'
expect_exit 2 write setup.ini --network ignores.ini
expect_notice 'error 1002'
expect_exit 1 read -o other-mode.ini --network ignores.ini
expect_notice 'the receiver is in operating mode 1 and not in mode 4 (DVB-C demodulator): what was read is what it is'
[ -s other-mode.ini ] || fail "writes no setup"

# What a receiver has not got.
setup wanting.ini '10MHz Reference Source=1' 'Input Impedance (ohm)=4' 'SAW Filter Bandwidth (MHz)=6'
receiver half.ini 'Installed Options=KTR-H2,KTR-H4,KTR-H5,KTR-H8'
expect_exit 1 check wanting.ini --receiver --network half.ini
expect_match 'receiver 200117 cannot do this setup$' '^  yes  operating mode: 4 ' \
    "option EXTREF \(.*\) is not installed. Order EXTREF, or set the setup's 10 MHz reference to Internal" \
    'option KTR-H8 \(or KTR-H9\) .* by this name .*lists "KTR-H8".* bandwidth to Off or 8 MHz'
expect_exit 0 check wanting.ini --receiver --network "$receivers/full.ini"
expect_match 'receiver 200117 can do this setup$'

# A scan checks first, and does as it is told.
quick=('BER Integration (Samples)=1' 'Maximum Settling Time (sec)=1')
fast=(--time-scale 0.01)
setup scan.ini 'Order Of QAM=256' "${quick[@]}"
expect_exit 0 scan scan.ini --network "$receivers/full.ini" "${fast[@]}" --write
expect_notice 'Receiver 200117: can do everything that scan.ini asks for' 'Configuring KTR'
expect_text '1 channel, 1 synchronised'
# What cannot be measured is told and left to the receiver; what the plug-in takes otherwise loads.
setup odd.ini 'Order Of QAM=256' "${quick[@]}" 'Symbol Rate 01=0' 'Count=1.0'
expect_exit 1 scan odd.ini --network "$receivers/full.ini" "${fast[@]}" --write
expect_notice 'odd.ini, line' '"Symbol Rate 01" is "0"; it has to be from 0.1 to 7'
setup external.ini 'Order Of QAM=256' "${quick[@]}" '10MHz Reference Source=1' 'SAW Filter Bandwidth (MHz)=2'
expect_exit 2 scan external.ini --network half.ini "${fast[@]}" --write --journal never.jsonl
expect_notice 'Order EXTREF' 'Order KTR-H6' 'To scan all the same: --force'
[ ! -e never.jsonl ] || fail "begins a journal"
expect_exit 0 scan external.ini --network half.ini "${fast[@]}" --write --force
expect_notice 'Order EXTREF' 'Going on (--force)'
expect_text '1 channel, 1 synchronised' # by the receiver's own reference and without a filter
# A filter that is fitted and listed by another name is measured with, though it is too narrow for this signal.
setup six.ini 'Order Of QAM=256' "${quick[@]}" 'SAW Filter Bandwidth (MHz)=6'
receiver loose.ini 'Installed Options=KTR-H2,KTR-H4,KTR-H5,KTR-H8'
for write in '' --write; do
    expect_exit 1 scan six.ini --network loose.ini "${fast[@]}" $write --force --json "six$write.jsonl"
    grep -q '"sawBandwidthMHz":6' "six$write.jsonl" || fail "switches the fitted filter off"
done
# The driver of a receiver without a network: it stands in its basic state, at 64-QAM and dBmV.
expect_exit 2 scan scan.ini --journal never.jsonl
expect_notice 'the receiver is set otherwise than scan.ini:' '  Order of QAM: 256 in the setup, 64 on the receiver' \
    'To bring it into the setup'"'"'s state: --write. To measure with the receiver'"'"'s own settings: --as-is'
[ ! -e never.jsonl ] || fail "begins a journal"
setup volts.ini 'Level Unit=mV' "${quick[@]}"
expect_exit 1 scan volts.ini --as-is --json as-is.jsonl
expect_text '(dBmV)'
grep -q '"levelUnit":"dBmV"' as-is.jsonl || fail "states the setup's settings"
setup mode.ini 'Mode=6'
expect_exit 1 check mode.ini --receiver --network "$receivers/full.ini" # 6 is doubtful in a file
expect_match '^  yes  operating mode: 6, but the receiver is in another one'
expect_exit 1 scan mode.ini --network "$receivers/full.ini" "${fast[@]}"
expect_notice 'The receiver was in another operating mode; it is now in mode 6'
expect_exit 2 scan mode.ini --network "$receivers/bare.ini" "${fast[@]}"
expect_notice 'Order KTR-S31'
expect_exit 2 scan scan.ini --network ignores.ini "${fast[@]}" --write --force
expect_notice 'error 1002'
echo "the receiver answers as it should"
