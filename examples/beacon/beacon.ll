Revision 4
; Logic locations of beacon
; Bit <number> <frame address> <offset in the frame> <region> <its number> <what is there>
Info DEVICE=tv7-200-s2
Info STARTSEL0=1
Bit 30671671 0x0004640c    835 SLR0 0 Block=SLICE_X49Y78 Latch=AQ Net=u_store/mem_reg_n_0_[0][5]
Bit 30671692 0x0004640c    856 SLR0 0 Block=SLICE_X49Y78 Latch=BQ Net=u_store/mem_reg_n_0_[0][4]
Bit 30671703 0x0004640c    867 SLR0 0 Block=SLICE_X49Y78 Latch=CQ Net=u_store/mem_reg_n_0_[1][5]
Bit 30671728 0x0004640c    892 SLR0 0 Block=SLICE_X49Y78 Latch=DQ Net=u_store/mem_reg_n_0_[1][4]
Bit 30672055 0x0004648c    835 SLR0 0 Block=SLICE_X49Y79 Latch=AQ Net=u_store/mem_reg_n_0_[2][5]
Bit 30672076 0x0004648c    856 SLR0 0 Block=SLICE_X49Y79 Latch=BQ Net=u_store/mem_reg_n_0_[2][4]
Bit 30672087 0x0004648c    867 SLR0 0 Block=SLICE_X49Y79 Latch=CQ Net=u_store/mem_reg_n_0_[3][5]
Bit 30672112 0x0004648c    892 SLR0 0 Block=SLICE_X49Y79 Latch=DQ Net=u_store/mem_reg_n_0_[3][4]
Bit 30672503 0x0004650c    899 SLR0 0 Block=SLICE_X50Y79 Latch=AQ Net=q[5]
Bit 30672524 0x0004650c    920 SLR0 0 Block=SLICE_X50Y79 Latch=BQ Net=q[4]
Bit 30672567 0x0004650c    963 SLR0 0 Block=SLICE_X50Y80 Latch=AQ Net=we
Bit 30672588 0x0004650c    984 SLR0 0 Block=SLICE_X50Y80 Latch=BQ Net=u_control/n_0_r_reg[tag][urgent]
Bit 30672599 0x0004650c    995 SLR0 0 Block=SLICE_X50Y80 Latch=CQ Net=addr[1]
Bit 30672624 0x0004650c   1020 SLR0 0 Block=SLICE_X50Y80 Latch=DQ Net=u_control/n_0_r_reg[count][0]
Bit 30673015 0x0004658c   1027 SLR0 0 Block=SLICE_X51Y81 Latch=AQ Net=addr[0]
Bit 30673042 0x0004658c   1054 SLR0 0 Block=SLICE_X51Y81 Latch=BMUX Net=beat
Bit 38671673 0x0004640c    837 SLR1 1 Block=SLICE_X49Y318 Latch=A5Q Net=lamp[1]
Bit 38671692 0x0004640c    856 SLR1 1 Block=SLICE_X49Y318 Latch=BQ Net=lamp[2]
Bit 34086752 0x00200000    992 SLR0 0 Block=RAMB36_X0Y23 Ram=B:BIT0
Bit 34086784 0x00200000   1024 SLR0 0 Block=RAMB36_X0Y23 Ram=B:BIT1
Bit 30601420 0x0000120c     71 SLR0 0 Block=B9 Latch=I Net=go
