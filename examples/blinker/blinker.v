// Plays a queue of patterns on two lamps: each pattern shines for ten enabled clocks.

module blinker (
  input        clk,
  input        rst,
  input        enable,
  input        push,      // queue one more pattern
  input  [1:0] pattern,
  output [1:0] led,
  output       full
);
  wire       tick;
  wire       playing;
  wire [1:0] word;

  ticker #(.LIMIT(4'd9)) u_ticker (
    .clk(clk), .rst(rst), .enable(enable), .tick(tick)
  );

  player u_player (
    .clk(clk), .rst(rst), .push(push), .pattern(pattern), .tick(tick),
    .word(word), .playing(playing), .full(full)
  );

  genvar i;
  generate
    for (i = 0; i < 2; i = i + 1) begin : bank
      lamp u_lamp (
        .clk(clk), .rst(rst), .tick(tick), .data(word[i]), .playing(playing), .led(led[i])
      );
    end
  endgenerate
endmodule

// Counts enabled clocks and gives a tick after every LIMIT + 1 of them.
module ticker #(
  parameter [3:0] LIMIT = 4'd9
) (
  input      clk,
  input      rst,
  input      enable,
  output reg tick
);
  reg [3:0] count;
  reg [3:0] limit = LIMIT;  // never anything else: synthesis makes it constant
  wire      last = (count == limit);

  always @(posedge clk)
    if (rst) limit <= LIMIT;

  always @(posedge clk)
    if (rst) begin
      count <= 4'd0;
      tick  <= 1'b0;
    end else begin
      tick <= enable & last;
      if (enable) count <= last ? 4'd0 : count + 4'd1;
    end
endmodule

// Takes the next pattern from the queue at every tick.
module player (
  input        clk,
  input        rst,
  input        push,
  input  [1:0] pattern,
  input        tick,
  output [1:0] word,
  output reg   playing,
  output       full
);
  wire empty;
  wire ready = ~empty;
  wire pop   = tick & ready;

  fifo u_fifo (
    .clk(clk), .rst(rst), .push(push), .wdata(pattern), .pop(pop),
    .rdata(word), .full(full), .empty(empty)
  );

  always @(posedge clk)
    if (rst) playing <= 1'b0;
    else if (tick) playing <= ready;
endmodule

// Four words of two bits. The third bit of each pointer tells a full queue from an empty one.
module fifo (
  input            clk,
  input            rst,
  input            push,
  input      [1:0] wdata,
  input            pop,
  output reg [1:0] rdata,
  output           full,
  output           empty
);
  (* ram_style = "registers" *) reg [1:0] mem [0:3];

  reg [2:0] wr_ptr;
  reg [2:0] rd_ptr;
  reg       overflow;  // nobody reads it: synthesis drops it

  assign empty = (wr_ptr == rd_ptr);
  assign full  = (wr_ptr[1:0] == rd_ptr[1:0]) & (wr_ptr[2] ^ rd_ptr[2]);

  wire write = push & ~full;
  wire lost  = push & full;

  always @(posedge clk or posedge rst)
    if (rst) begin
      wr_ptr   <= 3'd0;
      rd_ptr   <= 3'd0;
      overflow <= 1'b0;
    end else begin
      if (write) wr_ptr <= wr_ptr + 3'd1;
      if (pop) rd_ptr <= rd_ptr + 3'd1;
      if (lost) overflow <= 1'b1;
    end

  always @(posedge clk) begin
    if (write) mem[wr_ptr[1:0]] <= wdata;
    if (pop) rdata <= mem[rd_ptr[1:0]];
  end
endmodule

// Lights up for one tick's time if its bit of the pattern is set.
module lamp #(
  parameter POLARITY = 1'b0
) (
  input  clk,
  input  rst,
  input  tick,
  input  data,
  input  playing,
  output led
);
  reg on;
  reg polarity = POLARITY;  // never anything else: synthesis makes it constant

  assign led = on ^ polarity;

  always @(posedge clk)
    if (rst) polarity <= POLARITY;

  always @(posedge clk)
    if (rst) on <= 1'b0;
    else if (tick) on <= data & playing;
endmodule
