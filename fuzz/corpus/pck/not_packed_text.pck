ships\argon_0;0;0;0.5;SS_SH_0;
ships\argon_1;0;37;1.5;SS_SH_1;
ships\argon_2;0;74;2.5;SS_SH_2;
ships\argon_3;0;111;3.5;SS_SH_3;
ships\argon_4;0;148;4.5;SS_SH_4;
ships\argon_5;0;185;5.5;SS_SH_5;
ships\