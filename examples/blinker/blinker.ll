Revision 3
; Logic locations of blinker
; Bit <number> <frame address> <offset in the frame> <what is there>
Info DEVICE=tv7-40-f256
Bit  8684163 0x0040061f   2563 Block=SLICE_X12Y40 Latch=AQ Net=u_ticker/count[0]
Bit  8684184 0x0040061f   2584 Block=SLICE_X12Y40 Latch=BQ Net=u_ticker/count[1]
Bit  8684195 0x0040061f   2595 Block=SLICE_X12Y40 Latch=CQ Net=u_ticker/count[2]
Bit  8684220 0x0040061f   2620 Block=SLICE_X12Y40 Latch=DQ Net=u_ticker/count[3]
Bit  8684227 0x0040061f   2627 Block=SLICE_X12Y41 Latch=AQ Net=u_ticker/tick
Bit  8684248 0x0040061f   2648 Block=SLICE_X12Y41 Latch=BMUX Net=u_ticker/last
Bit  8799491 0x0040063f   2691 Block=SLICE_X13Y42 Latch=AQ Net=u_player/u_fifo/wr_ptr[0]
Bit  8799512 0x0040063f   2712 Block=SLICE_X13Y42 Latch=BQ Net=u_player/u_fifo/wr_ptr[1]
Bit  8799523 0x0040063f   2723 Block=SLICE_X13Y42 Latch=CQ Net=u_player/u_fifo/wr_ptr[2]
Bit  8799555 0x0040063f   2755 Block=SLICE_X13Y43 Latch=AQ Net=u_player/u_fifo/rd_ptr[0]
Bit  8799576 0x0040063f   2776 Block=SLICE_X13Y43 Latch=BQ Net=u_player/u_fifo/rd_ptr[1]
Bit  8799587 0x0040063f   2787 Block=SLICE_X13Y43 Latch=CQ Net=u_player/u_fifo/rd_ptr[2]
Bit  8914691 0x0040069f   2691 Block=SLICE_X14Y42 Latch=AQ Net=u_player/u_fifo/mem[0][0]
Bit  8914712 0x0040069f   2712 Block=SLICE_X14Y42 Latch=BQ Net=u_player/u_fifo/mem[0][1]
Bit  8914723 0x0040069f   2723 Block=SLICE_X14Y42 Latch=CQ Net=u_player/u_fifo/mem[1][0]
Bit  8914748 0x0040069f   2748 Block=SLICE_X14Y42 Latch=DQ Net=u_player/u_fifo/mem[1][1]
Bit  8914755 0x0040069f   2755 Block=SLICE_X14Y43 Latch=AQ Net=u_player/u_fifo/mem[2][0]
Bit  8914776 0x0040069f   2776 Block=SLICE_X14Y43 Latch=BQ Net=u_player/u_fifo/mem[2][1]
Bit  8914787 0x0040069f   2787 Block=SLICE_X14Y43 Latch=CQ Net=u_player/u_fifo/mem[3][0]
Bit  8914812 0x0040069f   2812 Block=SLICE_X14Y43 Latch=DQ Net=u_player/u_fifo/mem[3][1]
Bit  9029891 0x004006bf   2691 Block=SLICE_X15Y42 Latch=AQ Net=u_player/u_fifo/rdata[0]
Bit  9029912 0x004006bf   2712 Block=SLICE_X15Y42 Latch=BQ Net=u_player/u_fifo/rdata[1]
Bit  9029955 0x004006bf   2755 Block=SLICE_X15Y43 Latch=AMUX Net=u_player/playing
Bit  9145219 0x0040071f   2819 Block=SLICE_X16Y44 Latch=AQ Net=bank[0].u_lamp/on
Bit  9145240 0x0040071f   2840 Block=SLICE_X16Y44 Latch=BQ Net=bank[1].u_lamp/on
