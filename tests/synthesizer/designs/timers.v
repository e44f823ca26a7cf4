// Timers and an arbiter, written wastefully: registers that never change, that nobody reads, and
// that do the same as another.

module arbiter #(
    parameter CLIENTS = 4
) (
    input wire clk,
    input wire reset,
    input wire [CLIENTS-1:0] request,
    output reg [CLIENTS-1:0] grant,
    output wire busy
);
  reg [CLIENTS-1:0] granted;
  reg [CLIENTS-1:0] last;
  reg [7:0] statistics;
  wire [CLIENTS-1:0] masked = request & ~last;
  wire [CLIENTS-1:0] source = |masked ? masked : request;
  wire [CLIENTS-1:0] first = source & (~source + 1'b1);

  assign busy = |granted;

  always @(posedge clk)
    if (reset) begin
      grant <= 0;
      granted <= 0;
      last <= 0;
    end else begin
      grant <= first;
      granted <= first;
      if (|first) last <= first;
    end

  // Nobody reads it.
  always @(posedge clk) if (busy) statistics <= statistics + 8'd1;
endmodule

(* apart *)
module timer #(
    parameter LIMIT = 9,
    parameter WIDTH = 6
) (
    input wire clk,
    input wire set,
    input wire enable,
    output reg done,
    output wire [WIDTH-1:0] left
);
  reg [WIDTH-1:0] limit;
  reg [WIDTH-1:0] elapsed;
  reg [WIDTH-1:0] shadow;
  reg [0:3] kind;
  reg prescale = 1'b0;
  reg repeats = 1'b1;

  assign left = shadow ^ {{WIDTH - 4{1'b0}}, kind};

  always @(posedge clk) begin
    if (set) begin
      limit <= LIMIT;
      kind <= 4'b0110;
    end
    prescale <= prescale & enable;
    repeats <= 1'b1;
  end

  always @(posedge clk or posedge set)
    if (set) elapsed <= {WIDTH{1'b1}};
    else if (enable & ~prescale) elapsed <= elapsed == limit ? 0 : elapsed + 1'b1;

  always @(posedge clk or posedge set)
    if (set) shadow <= {WIDTH{1'b1}};
    else if (enable & repeats) shadow <= elapsed == limit ? 0 : elapsed + 1'b1;

  always @(posedge clk)
    if (set) done <= 1'b1;
    else done <= elapsed == limit;
endmodule

(* apart *)
module watchdog (
    input wire clk,
    input wire kick,
    output wire bark
);
  reg [7:0] count = 8'hff;
  reg [2:0] chain_a;
  reg [2:0] chain_b;
  reg [2:0] chain_c;
  reg always_on = 1'b1;
  reg always_off;

  assign bark = (count == 8'd0) & always_on & chain_b[2] | chain_c[2] & ~chain_a[2];

  always @(posedge clk) begin
    count <= kick ? 8'hff : count - 8'd1;
    chain_a <= {chain_a[1:0], kick};
    chain_b <= {chain_b[1:0], kick};
    chain_c <= {chain_c[1:0], ~kick};
    always_off <= 1'b0;
    if (always_off) always_on <= 1'b0;
  end
endmodule

module timers (
    input wire clk,
    input wire reset,
    input wire [4:1] request,
    output wire [4:1] grant,
    output wire busy,
    output wire [2:0] done,
    output wire [5:0] left,
    output wire bark
);
  wire [17:0] remaining;
  reg [0:2] enable;
  reg [0:2] enable_copy;
  reg [9:6] spare;
  reg used_once;
  // Its name is that of the arbiter's own, once levels are joined.
  reg [1:0] share_statistics;

  arbiter share (clk, reset, request, grant, busy);
  watchdog dog (clk, busy, bark);

  always @(posedge clk) if (busy) share_statistics <= {share_statistics[0], grant[2]};

  always @(posedge clk)
    if (reset) begin
      enable <= 3'b100;
      enable_copy <= 3'b100;
      spare <= 4'b1001;
      used_once <= 1'b0;
    end else begin
      enable <= {enable[2], enable[0:1]};
      enable_copy <= {enable[2], enable[0:1]};
      spare[8] <= request[4];
      used_once <= spare[9] & spare[8] & ~spare[7];
    end

  genvar i;
  generate
    for (i = 0; i < 3; i = i + 1) begin : clock
      timer #(.LIMIT(9 + 4 * i)) unit (
          .clk(clk),
          .set(reset),
          .enable(enable[i] ^ enable_copy[(i+1)%3]),
          .done(done[i]),
          .left(remaining[i*6+5:i*6])
      );
    end
  endgenerate

  assign left = remaining[5:0] ^ remaining[11:6] ^ remaining[17:12] ^
                {3'd0, share_statistics, used_once};
endmodule
