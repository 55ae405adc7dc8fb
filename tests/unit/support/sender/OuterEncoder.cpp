#include "support/sender/OuterEncoder.h"

namespace tvn2x::sender {
namespace {

int Multiply(int a, int b)
{
    int product = 0;
    for (; b != 0; b >>= 1) {
        product ^= b & 1 ? a : 0;
        a <<= 1;
        a ^= a & 0x100 ? 0x11D : 0;
    }
    return product;
}

/// (x + 1)(x + 2)(x + 4)..., the lowest coefficient first.
std::array<int, 17> Generator()
{
    std::array<int, 17> generator{1};
    int root = 1;
    for (int degree = 1; degree <= 16; ++degree, root = Multiply(root, 2)) {
        for (int i = degree; i >= 0; --i) {
            generator.at(i) = Multiply(generator.at(i), root) ^ (i > 0 ? generator.at(i - 1) : 0);
        }
    }
    return generator;
}

std::vector<uint8_t> WithParity(const Packet& packet)
{
    static const std::array<int, 17> generator = Generator();
    std::array<int, 16> rest{};
    for (const int byte : packet) {
        const int feedback = byte ^ rest[15];
        for (size_t i = 15; i > 0; --i) {
            rest[i] = rest[i - 1] ^ Multiply(feedback, generator[i]);
        }
        rest[0] = Multiply(feedback, generator[0]);
    }
    std::vector<uint8_t> word(packet.begin(), packet.end());
    for (size_t i = 16; i > 0; --i) {
        word.push_back(static_cast<uint8_t>(rest[i - 1]));
    }
    return word;
}

}  // namespace

Packet NumberedPacket(uint32_t number)
{
    Packet packet{0x47, 0x01, 0x00, 0x10};
    uint32_t state = number;
    for (size_t i = 4; i < packet.size(); ++i) {
        if (i < 8) {
            packet[i] = static_cast<uint8_t>(number >> (8 * (7 - i)));
        } else {
            state = state * 1664525 + 1013904223;
            packet[i] = static_cast<uint8_t>(state >> 24);
        }
    }
    return packet;
}

OuterEncoder::OuterEncoder()
{
    for (size_t branch = 0; branch < branches_.size(); ++branch) {
        branches_[branch].assign(17 * branch, 0);
    }
}

void OuterEncoder::Disperse(Packet& packet)
{
    if (packet_++ % 8 == 0) {
        packet[0] = 0xB8;
        register_ = {1, 0, 0, 1, 0, 1, 0, 1, 0, 0, 0, 0, 0, 0, 0};
    }
    for (size_t i = packet[0] == 0xB8 ? 1 : 0; i < packet.size(); ++i) {
        int sequence = 0;
        for (int bit = 0; bit < 8; ++bit) {
            const int next = register_[13] ^ register_[14];
            for (size_t stage = 14; stage > 0; --stage) {
                register_[stage] = register_[stage - 1];
            }
            register_[0] = next;
            sequence = 2 * sequence + next;
        }
        packet[i] = static_cast<uint8_t>(i == 0 ? packet[0] : packet[i] ^ sequence);
    }
}

std::vector<uint8_t> OuterEncoder::Encode(Packet packet)
{
    Disperse(packet);
    std::vector<uint8_t> word = WithParity(packet);
    for (size_t i = 0; i < word.size(); ++i) {
        std::deque<uint8_t>& branch = branches_[i % 12];
        branch.push_back(word[i]);
        word[i] = branch.front();
        branch.pop_front();
    }
    return word;
}

}  // namespace tvn2x::sender
