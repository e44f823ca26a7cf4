// Channels of configuration registers, counters and interrupts, laid out by nested generate loops.

(* apart *)
module edge_counter #(
    parameter WIDTH = 5
) (
    input wire clk,
    input wire clear,
    input wire signal,
    output reg [WIDTH-1:0] count
);
  reg previous;

  always @(posedge clk) begin
    previous <= signal;
    if (clear) count <= 0;
    else if (signal & ~previous) count <= count + 1'b1;
  end
endmodule

module channel (
    input wire clk,
    input wire reset,
    input wire write,
    input wire [7:0] data,
    input wire [3:0] pins,
    output wire [11:0] status
);
  reg [7:4] mode;
  reg [3:0] mask;
  wire [19:0] counts;

  always @(posedge clk)
    if (reset) begin
      mode <= 4'b1010;
      mask <= 4'b0000;
    end else if (write) begin
      mode <= data[7:4];
      mask <= data[3:0];
    end

  genvar pin;
  generate
    for (pin = 0; pin < 4; pin = pin + 1) begin : lane
      reg [1:0] filter;
      reg pending;
      wire level = filter[1] ^ mode[4+pin];

      always @(posedge clk)
        if (reset) filter <= 2'b00;
        else filter <= {filter[0], pins[pin]};
      always @(posedge clk)
        if (reset) pending <= 1'b0;
        else pending <= (pending | level) & mask[pin];

      edge_counter counter (
          .clk(clk),
          .clear(reset),
          .signal(level),
          .count(counts[pin*5+4:pin*5])
      );
    end
  endgenerate

  assign status = {
    lane[3].pending, lane[2].pending, lane[1].pending, lane[0].pending,
    counts[7:0] ^ {counts[19:12]}
  };
endmodule

module register_block (
    input wire clk,
    input wire reset,
    input wire [1:0] address,
    input wire write,
    input wire [7:0] data,
    input wire [15:0] pins,
    output reg [11:0] value,
    output wire interrupt
);
  wire [47:0] status;
  reg [3:0] enabled;
  wire [3:0] raised;

  genvar i, j;
  generate
    for (i = 0; i < 4; i = i + 1) begin : group
      reg [2:0] history[0:1];
      channel unit (
          .clk(clk),
          .reset(reset),
          .write(write && address == i),
          .data(data),
          .pins(pins[i*4+3:i*4]),
          .status(status[i*12+11:i*12])
      );
      for (j = 0; j < 2; j = j + 1) begin : half
        reg seen;
        always @(posedge clk)
          if (reset) seen <= 1'b0;
          else seen <= seen | (|status[i*12+8+j*2+1:i*12+8+j*2] & history[j][2]);
      end
      always @(posedge clk) begin
        history[0] <= {history[0][1:0], status[i*12+8]};
        history[1] <= {history[1][1:0], status[i*12+9]};
      end
      if (i % 2 == 0) begin : even
        reg toggled;
        always @(posedge clk) toggled <= ~toggled & half[0].seen;
        assign raised[i] = toggled & enabled[i];
      end else begin : odd
        reg [0:2] delay;
        always @(posedge clk) delay <= {half[1].seen, delay[0:1]};
        assign raised[i] = delay[2] & enabled[i];
      end
    end
  endgenerate

  always @(posedge clk) begin
    if (reset) enabled <= 4'hf;
    else if (write) enabled <= data[3:0] | enabled;
    case (address)
      2'd0: value <= status[11:0];
      2'd1: value <= status[23:12];
      2'd2: value <= status[35:24];
      2'd3: value <= status[47:36];
    endcase
  end

  assign interrupt = |raised;
endmodule
