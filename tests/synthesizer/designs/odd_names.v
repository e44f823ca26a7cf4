// Names that only just differ, in the source or after every special character is replaced.

(* apart *)
module cell_of_bits (
    input wire clk,
    input wire clear,
    input wire preset,
    input wire [3:0] in,
    output wire [7:0] out
);
  reg \pos[3] ;
  reg pos_3_;
  reg foo;
  reg foo_reg;
  reg [1:0] bar;
  reg [1:0] bar_reg;
  reg \q.r ;
  reg q_r;
  reg u;
  reg \u[0] ;

  assign out = {
    \pos[3] , pos_3_, foo, foo_reg, bar[1] ^ bar[0], bar_reg[1] ^ bar_reg[0], \q.r ,
    q_r ^ u & \u[0] 
  };

  always @(posedge clk) begin
    \pos[3] <= in[0] & in[1];
    pos_3_ <= in[0] | in[1];
    foo <= in[2];
    foo_reg <= foo ^ in[3];
    bar <= {in[0], foo_reg};
    q_r <= \q.r ;
    u <= foo ^ in[1];
    \u[0] <= foo & in[3];
  end

  always @(posedge clk or posedge clear)
    if (clear) bar_reg <= 2'b10;
    else bar_reg <= {bar[0], bar_reg[1]};

  always @(posedge clk)
    if (preset) \q.r <= 1'b1;
    else \q.r <= pos_3_ ^ bar_reg[0];
endmodule

module holder (
    input wire clk,
    input wire take,
    input wire [1:0] in,
    output wire [1:0] held
);
  reg [1:0] kept;
  assign held = kept;
  always @(posedge clk) if (take) kept <= in;
endmodule

module odd_names (
    input wire clk,
    input wire clear,
    input wire \set-all ,
    input wire [3:0] in,
    output wire [15:0] out,
    output reg [11:8] \up(down) ,
    output reg [0:3] reg_reg,
    output wire \in[4] ,
    output wire [5:0] held
);
  reg \a-b ;
  reg first_foo;
  wire [1:0] count = held[1:0] ^ held[3:2];
  reg [2:0] \cost$ ;
  reg [2:0] Case, CASE, case_;
  reg \7up ;
  reg n_0_x_reg;
  reg [1:0] x_rep;
  reg [1:0] level_reg[0:1];
  reg [1:0] level[0:1];

  assign \in[4] = \a-b ^ n_0_x_reg ^ first_foo;

  cell_of_bits first (clk, clear, \set-all , in, out[7:0]);
  cell_of_bits second (
      .clk(clk),
      .clear(1'b0),
      .preset(clear),
      .in(in ^ {4{n_0_x_reg}}),
      .out(out[15:8])
  );

  holder \unit[0] (clk, in[0], x_rep, held[1:0]);
  holder unit_0_ (clk, in[1], \cost$ [1:0], held[3:2]);
  holder count_reg (clk, in[2], count, held[5:4]);

  always @(posedge clk) begin
    \a-b <= in[0] ^ \cost$ [2];
    \cost$ <= {\cost$ [1:0], in[1]};
    Case <= {Case[1:0], in[2]} + CASE;
    CASE <= {CASE[0], in[3], CASE[1]};
    case_ <= case_ + Case;
    \7up <= ^case_;
    n_0_x_reg <= \7up & \a-b ;
    x_rep <= {x_rep[0], ^CASE};
    first_foo <= in[2] & x_rep[1];
    level[0] <= x_rep;
    level[1] <= level[0] ^ level_reg[0];
    level_reg[0] <= {in[0], x_rep[1]};
    level_reg[1] <= level[1] & level_reg[0];
  end

  always @(posedge clk)
    if (clear) reg_reg <= 4'b0101;
    else if (\set-all ) reg_reg <= 4'b1111;
    else reg_reg <= {reg_reg[3], reg_reg[0:2]} ^ {level_reg[1], 2'b00};

  always @(posedge clk or posedge clear)
    if (clear) \up(down) <= 4'b0011;
    else \up(down) <= \up(down) + {3'd0, \7up };
endmodule
