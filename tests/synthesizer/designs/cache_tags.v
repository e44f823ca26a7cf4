// The tags of a cache of two ways and eight lines, with its victim choice and a small miss queue.

(* apart *)
module way (
    input wire clk,
    input wire flush,
    input wire [2:0] line,
    input wire [5:0] tag,
    input wire fill,
    input wire dirty,
    output wire hit,
    output wire modified,
    output reg [5:0] victim
);
  reg [13:8] tags[0:7];
  reg [7:0] valid;
  reg changed[0:7];

  assign hit = valid[line] && tags[line] == tag;
  assign modified = changed[line];

  always @(posedge clk)
    if (flush) valid <= 8'd0;
    else if (fill) valid[line] <= 1'b1;

  always @(posedge clk) begin
    if (fill) tags[line] <= tag;
    if (fill | dirty) changed[line] <= dirty;
    victim <= tags[line];
  end
endmodule

module miss_queue (
    input wire clk,
    input wire flush,
    input wire push,
    input wire [8:0] address,
    input wire pop,
    output wire [8:0] oldest,
    output wire any
);
  reg [8:0] entry[4:7];
  reg [2:0] used;

  assign oldest = entry[4];
  assign any = used != 3'd0;

  always @(posedge clk) begin
    if (flush) used <= 3'd0;
    else if (push && !pop && used != 3'd4) used <= used + 3'd1;
    else if (pop && !push && any) used <= used - 3'd1;
    if (pop) begin
      entry[4] <= entry[5];
      entry[5] <= entry[6];
      entry[6] <= entry[7];
      if (push) entry[{1'b1, used[1:0]-2'd1}] <= address;
    end else if (push) entry[{1'b1, used[1:0]}] <= address;
  end
endmodule

module cache_tags (
    input wire clk,
    input wire flush,
    input wire look,
    input wire store,
    input wire [8:0] address,
    input wire refill,
    output reg hit,
    output wire [8:0] fetch,
    output wire fetching,
    output reg [6:0] written
);
  wire [1:0] hits, modified;
  wire [11:0] victims;
  reg recent[0:7];
  reg [8:0] held;
  reg turn;
  reg [1:0] parity[15:0];

  genvar w;
  generate
    for (w = 0; w < 2; w = w + 1) begin : set
      way tags (
          .clk(clk),
          .flush(flush),
          .line(held[2:0]),
          .tag(held[8:3]),
          .fill(refill && turn == w),
          .dirty(store && hits[w]),
          .hit(hits[w]),
          .modified(modified[w]),
          .victim(victims[w*6+5:w*6])
      );
    end
  endgenerate

  miss_queue misses (
      .clk(clk),
      .flush(flush),
      .push(look && hits == 2'b00),
      .address(held),
      .pop(refill),
      .oldest(fetch),
      .any(fetching)
  );

  always @(posedge clk) begin
    if (look) held <= address;
    hit <= |hits;
    turn <= ~recent[held[2:0]];
    if (|hits) recent[held[2:0]] <= hits[1];
    if (refill) parity[{held[2:0], turn}] <= {^held[8:6], ^held[5:3]};
    written <= {modified[turn], turn ? victims[11:6] : victims[5:0]} ^
               {5'd0, parity[{held[2:0], turn}]};
  end
endmodule
