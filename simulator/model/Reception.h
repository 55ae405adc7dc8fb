#pragma once

#include "dvbc/Qam.h"
#include "receivers/model/ReceiverSettings.h"
#include "simulator/model/ModelSections.h"
#include "simulator/model/NetworkModel.h"

namespace tvn2x {

/// The steps of acquisition, in the order in which the receiver takes them. Each needs all before it.
enum class Stage
{
    gainControl,
    timing,
    equaliser,
    carrier,
    frameSync,
    reedSolomon
};

constexpr int stageCount = 6;

/// What arrives at the demodulator for one receiver setting: the physics of the moment, without time or measurement
/// noise. Ratios in dB.
struct Reception
{
    ChannelModel channel;              ///< as the network has it; the strongest where several come in
    double level = 0;                  ///< dBµV within the channel's bandwidth, noise included
    double noiseLevel = 0;             ///< dBµV of the noise alone
    double frequencyOffset = 0;        ///< Hz, as the receiver's reference sees it
    double symbolRateOffset = 0;       ///< ppm
    double carrierToInterference = 0;  ///< neighbours that leak in included
    double signalToNoise = 0;          ///< the MER without jitter, carrier, I/Q errors and echoes
    double mer = 0;
    double bitsPerSymbol = 0;
    double bitRate = 0;  ///< bits per second before Reed-Solomon
    double ber = 0.5;    ///< before Reed-Solomon
    double margin = 0;   ///< dB of MER above what a bit error ratio of 2e-4 needs
    dvbc::PacketErrors packets;
    int stagesReached = 0;  ///< how many steps of acquisition this signal lets the receiver take

    /// Packets of the transport stream per second.
    double PacketRate() const { return bitRate / (8 * dvbc::packetBytes); }
};

/// `warming` is what the cable takes off besides its tilt, in dB at the end of the band.
Reception Receive(const NetworkModel& model, const ReceiverSettings& settings, double warming = 0);

}  // namespace tvn2x
