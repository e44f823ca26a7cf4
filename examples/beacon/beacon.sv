// Two lamps that show what was stored under a running address, whenever the input says so.

typedef struct packed {
  logic valid, urgent;
} tag_t;

typedef struct packed {
  tag_t       tag;
  logic [1:0] count;
} state_t;

module beacon (
    input  logic       clk, rst, go,
    input  logic [5:4] d,
    output logic [2:1] lamp
);
  logic we, beat;
  logic [1:0] addr;
  logic [5:4] q;

  control u_control (.*);
  store u_store (.*);
  for (genvar i = 0; i < 2; ++i) begin : gen
    bulb u_lamp (.clk, .rst, .beat, .level(q[i+4]), .lit(lamp[i+1]));
  end
endmodule

module control (
    input  logic       clk, rst, go,
    output logic       we, beat,
    output logic [1:0] addr
);
  state_t r;
  logic strobe;  // as r.tag.valid
  logic seen;    // nobody reads it

  always_ff @(posedge clk)
    if (rst) begin
      r <= '0;
      strobe <= 1'b0;
      seen <= 1'b0;
    end else begin
      r.tag.valid  <= go;
      r.tag.urgent <= go & r.tag.valid;
      r.count      <= r.count + 2'd1;
      strobe       <= go;
      seen         <= r.tag.urgent;
    end

  assign we   = r.tag.valid;
  assign addr = r.count;
  assign beat = r.tag.urgent & strobe;
endmodule

module store (
    input  logic       clk, we,
    input  logic [1:0] addr,
    input  logic [5:4] d,
    output logic [5:4] q
);
  logic [5:4] mem [0:3];
  logic [5:4] hold;

  always_ff @(posedge clk) begin
    if (we) mem[addr] <= d;
    hold <= mem[addr];
  end

  assign q = hold;
endmodule

module bulb (
    input  logic clk, rst, beat, level,
    output logic lit
);
  logic on, dim;

  always_ff @(posedge clk)
    if (rst) {on, dim} <= '0;
    else     {on, dim} <= {level & beat, 1'b0};

  assign lit = on & ~dim;
endmodule
