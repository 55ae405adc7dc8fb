#!/usr/bin/python3
"""Makes packets.bin and interleaved.bin beside itself with GNU Radio's blocks (Debian: gnuradio): ./outer_code.py

32 transport packets, the same through energy dispersal, Reed-Solomon encoder and convolutional interleaver.
"""
import os
import random

from gnuradio import blocks, dtv, gr

folder = os.path.dirname(os.path.abspath(__file__))
packets = 32
held_back = 8  # the blocks keep as many to themselves
generator = random.Random(300429)
data = []
for number in range(packets + held_back):
    payload = [generator.randrange(256) for _ in range(187)] if number % 8 else [0] * 187
    data += [0x47] + payload

graph = gr.top_block()
source = blocks.vector_source_b(data)
dispersal = dtv.dvbt_energy_dispersal(1)
encoder = dtv.dvbt_reed_solomon_enc(2, 8, 0x11D, 255, 239, 8, 51, 8)
interleaver = dtv.dvbt_convolutional_interleaver(136, 12, 17)
sink = blocks.vector_sink_b()
graph.connect(source, dispersal, encoder, interleaver, sink)
graph.run()

for name, content in (("packets.bin", data[: 188 * packets]), ("interleaved.bin", sink.data()[: 204 * packets])):
    with open(os.path.join(folder, name), "wb") as file:
        file.write(bytes(content))
