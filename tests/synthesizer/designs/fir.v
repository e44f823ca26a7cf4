// A symmetric FIR filter with coefficients that can be written, and one with fixed ones.

(* apart *)
module tap #(
    parameter DATA = 6,
    parameter SUM = 14
) (
    input wire clk,
    input wire step,
    input wire load,
    input wire signed [DATA-1:0] coefficient,
    input wire signed [DATA-1:0] sample,
    input wire signed [SUM-1:0] partial,
    output reg signed [SUM-1:0] sum
);
  reg signed [DATA-1:0] weight;
  reg signed [2*DATA-1:0] product;

  always @(posedge clk) begin
    if (load) weight <= coefficient;
    if (step) begin
      product <= weight * sample;
      sum <= partial + product;
    end
  end
endmodule

module fixed_tap #(
    parameter FACTOR = 1
) (
    input wire clk,
    input wire step,
    input wire [5:0] sample,
    output wire [9:0] product
);
  reg [9:0] scaled;
  assign product = scaled;
  always @(posedge clk) if (step) scaled <= sample * FACTOR;
endmodule

module fir (
    input wire clk,
    input wire clear,
    input wire valid,
    input wire signed [5:0] sample,
    input wire [3:0] load,
    input wire signed [5:0] coefficient,
    output wire signed [13:0] filtered,
    output reg [11:0] smoothed,
    output reg [1:6] tail
);
  reg signed [5:0] line[1:4];
  wire [69:0] partial;
  wire [39:0] products;

  assign partial[13:0] = 14'd0;
  assign filtered = partial[69:56];

  always @(posedge clk)
    if (clear) begin
      line[1] <= 6'd0;
      line[2] <= 6'd0;
      line[3] <= 6'd0;
      line[4] <= 6'd0;
    end else if (valid) begin
      line[1] <= sample;
      line[2] <= line[1];
      line[3] <= line[2];
      line[4] <= line[3];
    end

  genvar i;
  generate
    for (i = 0; i < 4; i = i + 1) begin : stage
      tap #(.SUM(14)) multiply (
          .clk(clk),
          .step(valid),
          .load(load[i]),
          .coefficient(coefficient),
          .sample(line[i+1]),
          .partial(partial[i*14+13:i*14]),
          .sum(partial[i*14+27:i*14+14])
      );
      fixed_tap #(.FACTOR(2 * i + 2)) scale (clk, valid, line[i+1], products[i*10+9:i*10]);
    end
  endgenerate

  always @(posedge clk) begin
    smoothed <= (products[9:0] + products[19:10]) + (products[29:20] + products[39:30]);
    if (valid) tail <= line[4];
  end
endmodule
