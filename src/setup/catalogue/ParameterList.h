// The values that the product handles, one row each, as the published library, files, dialogs and sentences know them.
// A list without an include guard: whoever includes it says first, by the macro PARAMETER, what a row becomes. The
// columns are those of the struct Parameter behind the number, "" for what a parameter has not:
//
//   name, number, kind, caption, name in files, title in a sentence, unit, pattern of a reading
//
// A number once published stays. A new parameter follows the last one, and MP_LAST goes with it. The compiler of the
// type library reads this file too: plain letters only.

#ifndef PARAMETER
#define PARAMETER(name, number, kind, caption, file, title, unit, format)
#endif
#ifndef PARAMETER_BOUND  // a name for the first or last number of a range
#define PARAMETER_BOUND(name, number)
#endif

// A reading shows what the receiver resolves: tenths of a decibel or of a per cent, hundredths of a degree, whole
// hertz. The bit error rate spans ten decades and keeps its own exponent.
PARAMETER_BOUND(MP_FIRST, 1)
PARAMETER(MP_ZIN, 1, setting, L"Input Route", "", L"", L"", L"")
PARAMETER(MP_SAWBW, 2, setting, L"SAW Filter Bandwidth (MHz)", "", L"", L"", L"")
PARAMETER(MP_ORDEROFQAM, 3, setting, L"Order of QAM", "", L"", L"", L"")
PARAMETER(MP_ROLLOFFFACTOR, 4, setting, L"Rolloff Factor", "", L"", L"", L"")
PARAMETER(MP_LEVELUNIT, 5, setting, L"Level Unit", "", L"", L"", L"")
PARAMETER(MP_REFERENCE, 6, setting, L"10 MHz Reference", "", L"", L"", L"")
PARAMETER(MP_BERSAMPLES, 7, setting, L"BER Integration (Samples)", "", L"", L"", L"")
PARAMETER(MP_MAXSETTLINGTIME, 8, setting, L"Maximum Settling Time (sec)", "", L"", L"", L"")
PARAMETER(MP_XAXIS, 9, setting, L"X Axis is Frequency", "", L"", L"", L"")
PARAMETER_BOUND(MP_LASTSTATIC, 9)
PARAMETER_BOUND(MP_FIRSTFIXED, 10)
PARAMETER(MP_USERFIELD, 10, column, L"User Field", "userfield", L"", L"", L"")
PARAMETER(MP_FREQUENCY, 11, column, L"Center Frequency (MHz)", "frequency", L"", L"", L"")
PARAMETER(MP_SYMBOLRATE, 12, column, L"Symbol Rate (MSymb/s)", "symbolrate", L"", L"", L"")
PARAMETER_BOUND(MP_LASTFIXED, 12)
PARAMETER(MP_STATUS, 13, column, L"Status", "status", L"", L"", L"")
PARAMETER(MP_TIMESTAMP, 14, column, L"Time Stamp", "timestamp", L"", L"", L"")
PARAMETER(MP_RFLEV, 15, reading, L"RF Level", "rflev", L"RF level", L"dB\u00B5V", L"0.0")
PARAMETER(MP_BER, 16, ratio, L"BER before RS", "ber", L"BER before RS", L"", L"")
PARAMETER(MP_FREQOFF, 17, reading, L"Frequency Offset (Hz)", "freqoff", L"frequency offset", L"Hz", L"#0")
PARAMETER(MP_REF, 18, lock, L"10 MHz Ref Sync", "ref", L"10 MHz reference", L"", L"")
PARAMETER(MP_SYNC, 19, lock, L"Symbol Rate/Carrier Sync", "sync", L"symbol rate and carrier", L"", L"")
PARAMETER(MP_DATA, 20, lock, L"Frame Sync", "data", L"frame", L"", L"")
PARAMETER(MP_IQIMBAL, 21, reading, L"I/Q Imbalance (%)", "iqimbal", L"I/Q imbalance", L"%", L"0.0")
PARAMETER(MP_IQPHASE, 22, reading, L"I/Q Phase (\u00B0)", "iqphase", L"I/Q phase", L"\u00B0", L"0.00")
PARAMETER(MP_CS, 23, reading, L"Carrier Suppression (dB)", "cs", L"carrier suppression", L"dB", L"0.0")
PARAMETER(MP_PHASJIT, 24, reading, L"Phase Jitter (\u00B0 RMS)", "phasjit", L"phase jitter", L"\u00B0", L"0.00")
PARAMETER(MP_CI, 25, reading, L"C/I (dB)", "ci", L"C/I", L"dB", L"0.0")
PARAMETER(MP_SN, 26, reading, L"S/N (dB)", "sn", L"S/N", L"dB", L"0.0")
PARAMETER(MP_MER, 27, reading, L"MER (dB RMS)", "mer", L"MER", L"dB", L"0.0")
PARAMETER(MP_MERPCT, 28, reading, L"MER (% RMS)", "merpct", L"MER", L"%", L"0.0")
PARAMETER(MP_SY, 29, reading, L"Sync Errors (%)", "sy", L"sync errors", L"%", L"0.0")
PARAMETER(MP_DE, 30, reading, L"Data Errors (%)", "de", L"data errors", L"%", L"0.0")
PARAMETER_BOUND(MP_LAST, 30)

#undef PARAMETER
#undef PARAMETER_BOUND
