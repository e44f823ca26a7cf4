// A serial port: transmitter and receiver, each with a queue of its own size.

(* apart *)
module queue #(
    parameter WIDTH = 8,
    parameter LEVELS = 2
) (
    input wire clk,
    input wire reset_n,
    input wire push,
    input wire [WIDTH-1:0] in,
    input wire pop,
    output wire [WIDTH-1:0] out,
    output wire empty,
    output wire full
);
  reg [WIDTH-1:0] mem[0:(1<<LEVELS)-1];
  reg [LEVELS:0] head;
  reg [LEVELS:0] tail;
  reg overflow;

  assign empty = head == tail;
  assign full = head == {~tail[LEVELS], tail[LEVELS-1:0]};
  assign out = mem[tail[LEVELS-1:0]];

  always @(posedge clk or negedge reset_n)
    if (!reset_n) begin
      head <= 0;
      tail <= 0;
      overflow <= 1'b0;
    end else begin
      if (push && !full) head <= head + 1'b1;
      if (pop && !empty) tail <= tail + 1'b1;
      if (push && full) overflow <= 1'b1;
    end

  always @(posedge clk) if (push && !full) mem[head[LEVELS-1:0]] <= in;
endmodule

module transmitter #(
    parameter DIVISOR = 10
) (
    input wire clk,
    input wire reset_n,
    input wire [7:0] data,
    input wire valid,
    output wire ready,
    output reg line
);
  reg [3:0] divider;
  reg [9:0] shift;
  reg [3:0] remaining;

  assign ready = remaining == 4'd0;

  always @(posedge clk or negedge reset_n)
    if (!reset_n) begin
      divider <= 4'd0;
      shift <= 10'h3ff;
      remaining <= 4'd0;
      line <= 1'b1;
    end else begin
      line <= shift[0];
      if (ready) begin
        divider <= 4'd0;
        if (valid) begin
          shift <= {1'b1, data, 1'b0};
          remaining <= 4'd10;
        end
      end else if (divider == DIVISOR - 1) begin
        divider <= 4'd0;
        shift <= {1'b1, shift[9:1]};
        remaining <= remaining - 4'd1;
      end else divider <= divider + 4'd1;
    end
endmodule

module receiver #(
    parameter DIVISOR = 10
) (
    input wire clk,
    input wire reset_n,
    input wire line,
    output reg [0:7] data,
    output reg valid
);
  localparam WAITING = 2'd0, STARTING = 2'd1, TAKING = 2'd2, STOPPING = 2'd3;
  reg [1:0] state;
  reg [2:0] sync = 3'b111;
  reg [3:0] divider;
  reg [2:0] taken;

  // The line is sampled at the falling edge, half a period before the machine looks at it.
  always @(negedge clk) sync <= {sync[1:0], line};

  always @(posedge clk or negedge reset_n)
    if (!reset_n) begin
      state <= WAITING;
      divider <= 4'd0;
      taken <= 3'd0;
      data <= 8'd0;
      valid <= 1'b0;
    end else begin
      valid <= 1'b0;
      divider <= divider + 4'd1;
      case (state)
        WAITING: begin
          divider <= 4'd0;
          if (!sync[2]) state <= STARTING;
        end
        STARTING:
        if (divider == DIVISOR / 2) begin
          divider <= 4'd0;
          taken <= 3'd0;
          state <= sync[2] ? WAITING : TAKING;
        end
        TAKING:
        if (divider == DIVISOR - 1) begin
          divider <= 4'd0;
          data <= {sync[2], data[0:6]};
          taken <= taken + 3'd1;
          if (taken == 3'd7) state <= STOPPING;
        end
        STOPPING:
        if (divider == DIVISOR - 1) begin
          valid <= sync[2];
          state <= WAITING;
        end
      endcase
    end
endmodule

module uart (
    input wire clk,
    input wire reset_n,
    input wire [7:0] write_data,
    input wire write,
    output wire write_full,
    output wire [7:0] read_data,
    input wire read,
    output wire read_empty,
    input wire rx,
    output wire tx
);
  wire [7:0] to_send, received;
  wire none, ready, valid;

  queue #(.LEVELS(2)) outgoing (
      clk, reset_n, write, write_data, ready & ~none, to_send, none, write_full
  );
  transmitter #(.DIVISOR(12)) sender (clk, reset_n, to_send, ~none, ready, tx);
  receiver #(.DIVISOR(12)) listener (clk, reset_n, rx, received, valid);
  queue #(.LEVELS(3)) incoming (
      .clk(clk),
      .reset_n(reset_n),
      .push(valid),
      .in(received),
      .pop(read),
      .out(read_data),
      .empty(read_empty),
      .full()
  );
endmodule
