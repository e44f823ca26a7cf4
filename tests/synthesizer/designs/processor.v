// A processor of three stages: eight registers, flags, a call stack, a program in a case statement.

module program_store (
    input wire clk,
    input wire enable,
    input wire [4:0] address,
    output reg [15:0] instruction
);
  always @(posedge clk)
    if (enable)
      case (address)
        5'd0: instruction <= 16'h1103;
        5'd1: instruction <= 16'h1205;
        5'd2: instruction <= 16'h2312;
        5'd3: instruction <= 16'h3431;
        5'd4: instruction <= 16'h4543;
        5'd5: instruction <= 16'h7009;
        5'd6: instruction <= 16'h5654;
        5'd7: instruction <= 16'h6006;
        5'd9: instruction <= 16'h2765;
        5'd10: instruction <= 16'h8000;
        default: instruction <= 16'h0000;
      endcase
endmodule

(* apart *)
module arithmetic (
    input wire clk,
    input wire [2:0] operation,
    input wire [7:0] a,
    input wire [7:0] b,
    output reg [7:0] result,
    output reg carry,
    output reg zero,
    output reg negative
);
  reg [8:0] sum;

  always @* begin
    case (operation)
      3'd0: sum = {1'b0, a};
      3'd1: sum = {1'b0, b};
      3'd2: sum = a + b;
      3'd3: sum = a - b;
      3'd4: sum = {1'b0, a & b};
      3'd5: sum = {1'b0, a | b};
      3'd6: sum = {1'b0, a ^ b};
      default: sum = {a, 1'b0};
    endcase
  end

  always @(posedge clk) begin
    result <= sum[7:0];
    carry <= sum[8];
    zero <= sum[7:0] == 8'd0;
    negative <= sum[7];
  end
endmodule

module register_file (
    input wire clk,
    input wire write,
    input wire [2:0] target,
    input wire [7:0] data,
    input wire [2:0] first,
    input wire [2:0] second,
    output wire [7:0] a,
    output wire [7:0] b
);
  reg [7:0] bank[0:7];

  assign a = bank[first];
  assign b = bank[second];

  always @(posedge clk) if (write) bank[target] <= data;
endmodule

(* apart *)
module sequencer (
    input wire clk,
    input wire reset,
    input wire go,
    input wire halted,
    output wire fetch,
    output wire execute,
    output wire retire
);
  localparam IDLE = 3'd0, FETCH = 3'd1, EXECUTE = 3'd2, RETIRE = 3'd3, STOPPED = 3'd4;
  reg [2:0] state;

  assign fetch = state == FETCH;
  assign execute = state == EXECUTE;
  assign retire = state == RETIRE;

  always @(posedge clk)
    if (reset) state <= IDLE;
    else
      case (state)
        IDLE: if (go) state <= FETCH;
        FETCH: state <= EXECUTE;
        EXECUTE: state <= RETIRE;
        RETIRE: state <= halted ? STOPPED : FETCH;
        default: state <= STOPPED;
      endcase
endmodule

module processor (
    input wire clk,
    input wire reset,
    input wire go,
    output wire [7:0] port,
    output reg halted
);
  wire fetch, execute, retire;
  wire [15:0] instruction;
  wire [7:0] a, b, result;
  wire carry, zero, negative;
  reg [4:0] counter;
  reg [4:0] stack[3:0];
  reg [1:0] depth;
  reg [2:0] target;
  reg write;
  reg [2:0] flags;
  reg [3:0] version = 4'd5;

  assign port = result ^ {version, version};

  sequencer control (clk, reset, go, halted, fetch, execute, retire);
  program_store store (clk, fetch, counter, instruction);
  register_file file (
      .clk(clk),
      .write(write & retire),
      .target(target),
      .data(result),
      .first(instruction[6:4]),
      .second(instruction[2:0]),
      .a(a),
      .b(b)
  );
  arithmetic alu (
      .clk(clk),
      .operation(instruction[14:12]),
      .a(a),
      .b(instruction[15:12] == 4'd1 ? instruction[7:0] : b),
      .result(result),
      .carry(carry),
      .zero(zero),
      .negative(negative)
  );

  always @(posedge clk)
    if (reset) begin
      counter <= 5'd0;
      depth <= 2'd0;
      flags <= 3'd0;
      write <= 1'b0;
      halted <= 1'b0;
    end else if (execute) begin
      target <= instruction[10:8];
      write <= instruction[15:12] != 4'd6 && instruction[15:12] != 4'd7;
      halted <= instruction[15];
    end else if (retire) begin
      flags <= {carry, zero, negative};
      counter <= counter + 5'd1;
      if (instruction[15:12] == 4'd6 && !flags[1]) counter <= {1'b0, instruction[3:0]};
      if (instruction[15:12] == 4'd7) begin
        stack[depth] <= counter;
        depth <= depth + 2'd1;
        counter <= instruction[4:0];
      end
      if (instruction[15:12] == 4'd0 && depth != 2'd0) begin
        depth <= depth - 2'd1;
        counter <= stack[depth-2'd1];
      end
    end
endmodule
