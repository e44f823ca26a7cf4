// From generic cells to those of a device: flip-flops with clock enable and one control, and
// look-up tables of up to six inputs. An unknown initial value becomes that of the reset.

`define FLIP_FLOP(GENERIC, CELL, CONTROL, VALUE) \
module GENERIC (input C, D, R, E, output Q); \
  parameter _TECHMAP_WIREINIT_Q_ = 1'bx; \
  wire _TECHMAP_REMOVEINIT_Q_ = 1'b1; \
  CELL #(.INIT(_TECHMAP_WIREINIT_Q_ === 1'bx ? VALUE : _TECHMAP_WIREINIT_Q_)) \
      _TECHMAP_REPLACE_ (.C(C), .CE(E), .D(D), .CONTROL(R), .Q(Q)); \
endmodule

`FLIP_FLOP(\$_SDFFE_PP0P_ , FDRE, R, 1'b0)
`FLIP_FLOP(\$_SDFFE_PP1P_ , FDSE, S, 1'b1)
`FLIP_FLOP(\$_DFFE_PP0P_ , FDCE, CLR, 1'b0)
`FLIP_FLOP(\$_DFFE_PP1P_ , FDPE, PRE, 1'b1)
`FLIP_FLOP(\$_SDFFE_NP0P_ , FDRE_1, R, 1'b0)
`FLIP_FLOP(\$_SDFFE_NP1P_ , FDSE_1, S, 1'b1)

module \$lut (A, Y);
  parameter WIDTH = 1;
  parameter LUT = 2'b10;
  input [WIDTH-1:0] A;
  output Y;
  generate
    case (WIDTH)
      1: LUT1 #(.INIT(LUT)) _TECHMAP_REPLACE_ (.I0(A[0]), .O(Y));
      2: LUT2 #(.INIT(LUT)) _TECHMAP_REPLACE_ (.I0(A[0]), .I1(A[1]), .O(Y));
      3: LUT3 #(.INIT(LUT)) _TECHMAP_REPLACE_ (.I0(A[0]), .I1(A[1]), .I2(A[2]), .O(Y));
      4: LUT4 #(.INIT(LUT)) _TECHMAP_REPLACE_ (
          .I0(A[0]), .I1(A[1]), .I2(A[2]), .I3(A[3]), .O(Y));
      5: LUT5 #(.INIT(LUT)) _TECHMAP_REPLACE_ (
          .I0(A[0]), .I1(A[1]), .I2(A[2]), .I3(A[3]), .I4(A[4]), .O(Y));
      6: LUT6 #(.INIT(LUT)) _TECHMAP_REPLACE_ (
          .I0(A[0]), .I1(A[1]), .I2(A[2]), .I3(A[3]), .I4(A[4]), .I5(A[5]), .O(Y));
      default: wire _TECHMAP_FAIL_ = 1'b1;
    endcase
  endgenerate
endmodule
