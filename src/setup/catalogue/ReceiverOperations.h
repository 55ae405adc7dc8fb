// The operations of a test receiver, one row each, under the names that the driver's interface has for them. A list
// without an include guard: whoever includes it says first, by a macro, what the rows of a kind become. A kind that is
// left out becomes RECEIVER_OPERATION(name), and nothing where that is left out too.
//
// Every operation may raise an error.

#ifndef RECEIVER_OPERATION
#define RECEIVER_OPERATION(name)
#endif
#ifndef RECEIVER_READING  // a number that is measured when it is asked for, and the parameter that it feeds
#define RECEIVER_READING(name, parameter) RECEIVER_OPERATION(name)
#endif
#ifndef RECEIVER_READING_OF_ITS_OWN  // the same, where a scan does more than to read it
#define RECEIVER_READING_OF_ITS_OWN(name, parameter) RECEIVER_READING(name, parameter)
#endif
#ifndef RECEIVER_STATE  // bool or std::wstring, as it is
#define RECEIVER_STATE(Type, name) RECEIVER_OPERATION(name)
#endif
#ifndef RECEIVER_COUNTERS  // a state of its own type
#define RECEIVER_COUNTERS(name) RECEIVER_STATE(dvbc::ErroredTime, name)
#endif
#ifndef RECEIVER_SETTING  // int32_t, double or bool, to be asked for and to be set
#define RECEIVER_SETTING(Type, name) RECEIVER_OPERATION(name)
#endif
#ifndef RECEIVER_ACTION
#define RECEIVER_ACTION(name) RECEIVER_OPERATION(name)
#endif
#ifndef INSTRUMENT_IDENTITY  // std::wstring
#define INSTRUMENT_IDENTITY(name) RECEIVER_OPERATION(name)
#endif
#ifndef INSTRUMENT_SETTING  // bool, to be asked for and to be set
#define INSTRUMENT_SETTING(name) RECEIVER_OPERATION(name)
#endif

// Readings, in the order in which a scan takes them. ValueStatus tells of the last one.
RECEIVER_READING_OF_ITS_OWN(ReadRfLevel, MP_RFLEV)  // in the receiver's level unit; needs no lock
RECEIVER_READING_OF_ITS_OWN(ReadBer, MP_BER)        // ratio before Reed-Solomon; starts a count where none runs
RECEIVER_READING(ReadFrequencyOffset, MP_FREQOFF)   // Hz
RECEIVER_READING(ReadIqImbalance, MP_IQIMBAL)       // %
RECEIVER_READING(ReadIqPhase, MP_IQPHASE)           // degrees
RECEIVER_READING(ReadCarrierSuppression, MP_CS)     // dB
RECEIVER_READING(ReadPhaseJitter, MP_PHASJIT)       // degrees RMS
RECEIVER_READING(ReadCarrierToInterference, MP_CI)  // dB
RECEIVER_READING(ReadSignalToNoise, MP_SN)          // dB
RECEIVER_READING(ReadMer, MP_MER)                   // dB RMS
RECEIVER_READING(ReadMerPercent, MP_MERPCT)         // % RMS
RECEIVER_STATE(std::wstring, ValueStatus)           // "", or the range marker "---", "UNDER" or "OVER"
RECEIVER_STATE(std::wstring, BerState)              // "---" where no count can run, else its progress in words
RECEIVER_STATE(std::wstring, BerResult)             // of the count, with a point as decimal separator

// Synchronisation.
RECEIVER_STATE(bool, TsError)  // the transport stream has errors, or is none
RECEIVER_STATE(bool, SymbolClockUnlocked)
RECEIVER_STATE(bool, CarrierUnlocked)
RECEIVER_STATE(bool, ReferenceLocked)  // to the external 10 MHz reference
RECEIVER_STATE(bool, RfSignalPresent)
RECEIVER_COUNTERS(ErrorCounters)  // errored time since the last reset
RECEIVER_ACTION(ResetErrorCounters)

// Settings.
RECEIVER_SETTING(int32_t, BerSamples)              // blocks of 10^7 bits
RECEIVER_SETTING(int32_t, RollOffFactor)           // hundredths
RECEIVER_SETTING(int32_t, OrderOfQam)              // 4, 16, 32, 64, 128 or 256
RECEIVER_SETTING(double, SymbolRate)               // symbols per second
RECEIVER_SETTING(int32_t, SawBandwidth)            // MHz, 0 = off; the receiver may take another filter
RECEIVER_SETTING(int32_t, ReferenceSource)         // 0 internal, 1 external
RECEIVER_SETTING(int32_t, LevelUnit)               // code 0..5
RECEIVER_SETTING(int32_t, InputRoute)              // 2, 4, 50, 75 or 128
RECEIVER_SETTING(int32_t, Mode)                    // operating mode, 4 = DVB-C demodulator
RECEIVER_SETTING(bool, Hold)                       // readings and lock states are frozen while true
RECEIVER_SETTING(double, Frequency)                // centre frequency in Hz
RECEIVER_SETTING(int32_t, InputAttenuation)        // dB, of the receiver routes; 255 is automatic
RECEIVER_SETTING(int32_t, DemodulatorGainControl)  // of the demodulator route: 0 fixed, 1 automatic
RECEIVER_SETTING(int32_t, Equaliser)               // 0 off, 1 adaptive
RECEIVER_ACTION(Initialise)                        // brings the receiver into its basic state

// Identity.
RECEIVER_STATE(std::wstring, SerialNumber)
RECEIVER_STATE(std::wstring, FirmwareVersion)
RECEIVER_STATE(std::wstring, InstalledOptions)  // separated by commas

// The receiver as an instrument among others.
INSTRUMENT_SETTING(Online)  // stays off line, without an error, where nothing answers
INSTRUMENT_IDENTITY(InstrumentName)
INSTRUMENT_IDENTITY(BusAddress)
INSTRUMENT_IDENTITY(Model)
INSTRUMENT_IDENTITY(Manufacturer)
INSTRUMENT_IDENTITY(Hardware)  // variant and revision

#undef RECEIVER_OPERATION
#undef RECEIVER_READING
#undef RECEIVER_READING_OF_ITS_OWN
#undef RECEIVER_STATE
#undef RECEIVER_COUNTERS
#undef RECEIVER_SETTING
#undef RECEIVER_ACTION
#undef INSTRUMENT_IDENTITY
#undef INSTRUMENT_SETTING
