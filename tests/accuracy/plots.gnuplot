# The plots of docs/accuracy.md, from the data that orvanel_accuracy writes into the current folder.
blue = "#1f5fa8"; red = "#c23b22"; green = "#2e8b57"; gold = "#c98a00"; violet = "#7a4fa3"; grey = "#888888"
set encoding utf8
set style line 11 lc rgb "#444444" lw 1
set border 3 ls 11
set grid lc rgb "#dddddd" lt 1 lw 1
set tics nomirror out scale 0.6
set key samplen 2 spacing 1.15
svg(width, height) = sprintf("set terminal svg size %d,%d dynamic background '#ffffff' font 'sans-serif,14'", width, height)

# ---- A curve, and its error below

set lmargin at screen 0.11; set rmargin at screen 0.80
set key outside right top Left reverse
upper = "set tmargin at screen 0.96; set bmargin at screen 0.49; set format x ''; unset xlabel"
lower = "set tmargin at screen 0.44; set bmargin at screen 0.11"

eval svg(900, 620)
set output "accuracy-diffraction.svg"
set multiplot
set xrange [0:1]
eval upper
set ylabel "MTF" offset 1,0
set yrange [0:1]
plot "diffraction.dat" index 0 using 1:2 with lines lw 2 lc rgb grey title "closed form", \
     "" index 0 using 1:3 every 4 with points pt 7 ps 0.5 lc rgb blue title "row", \
     "" index 2 using 1:3 every 4 with points pt 6 ps 0.7 lc rgb red title "diagonal"
eval lower
set format x "%.1f"
set xlabel "spatial frequency over cut-off frequency"
set ylabel "library − closed form, 10^{−4}" offset 1,0
set yrange [-11:11]
plot "diffraction.dat" index 3 using 1:($2*1e4) with lines dt 2 lc rgb grey title "bound", \
     "" index 3 using 1:(-$2*1e4) with lines dt 2 lc rgb grey notitle, \
     "" index 0 using 1:($4*1e4) with lines lw 1.5 lc rgb blue title "row", \
     "" index 2 using 1:($4*1e4) with lines lw 1.5 lc rgb red title "diagonal"
unset multiplot

set output "accuracy-strehl.svg"
set multiplot
set xrange [0:0.3]
eval upper
set yrange [0:1]
set ylabel "Strehl ratio on the axis"
set arrow 1 from 1/14., graph 0 to 1/14., graph 1 nohead dt 3 lc rgb grey
set label 1 "λ/14" at 1/14.+0.003, 0.06 tc rgb "#666666"
plot "strehl.dat" using 1:4 with lines dt 2 lw 1.5 lc rgb grey title "exp(−s^2)", \
     "" using 1:2 with lines dt 4 lw 1.5 lc rgb grey title "(1 − s^2/2)^2", \
     "" using 1:($3 > 0 ? $3 : NaN) with lines dt 3 lw 1.5 lc rgb grey title "1 − s^2", \
     "" using 1:14 with lines lw 1.5 lc rgb violet title "(6, 6)", "" using 1:8 with lines lw 1.5 lc rgb red title "(3, 1)", \
     "" using 1:11 with lines lw 1.5 lc rgb green title "(4, 0)", "" using 1:5 with lines lw 1.5 lc rgb blue title "(2, 0)", \
     "" using 1:6 every 4 with points pt 7 ps 0.5 lc rgb blue notitle, "" using 1:9 every 4 with points pt 7 ps 0.5 lc rgb red notitle, \
     "" using 1:12 every 4 with points pt 7 ps 0.5 lc rgb green notitle, "" using 1:15 every 4 with points pt 7 ps 0.5 lc rgb violet notitle, \
     NaN with points pt 7 ps 0.5 lc rgb "#444444" title "library"
eval lower
set format x "%.2f"
set xlabel "RMS wavefront error, waves"
set ylabel "library − integral, 10^{−3}"
set yrange [*:*]
set ytics 1
unset arrow; unset label
plot 0 with lines lc rgb "#bbbbbb" notitle, \
     "strehl.dat" using 1:($16*1e3) with lines lw 1.5 lc rgb violet title "(6, 6)", "" using 1:($10*1e3) with lines lw 1.5 lc rgb red title "(3, 1)", \
     "" using 1:($13*1e3) with lines lw 1.5 lc rgb green title "(4, 0)", "" using 1:($7*1e3) with lines lw 1.5 lc rgb blue title "(2, 0)"
unset multiplot
set ytics auto

set output "accuracy-eyes.svg"
set multiplot
pupils = "2.3 3.0 4.1 6.0 7.5"
colours = sprintf("%s %s %s %s %s", green, blue, violet, gold, red)
set xrange [0:1]
eval upper
set logscale y
set format y "10^{%T}"
set yrange [1e-5:1]
set ylabel "MTF along the row"
plot NaN with lines lw 1.5 lc rgb "#444444" title "integral", NaN with points pt 7 ps 0.5 lc rgb "#444444" title "library", \
     for [i=1:5] "observer-".word(pupils, i).".dat" using 1:2 with lines lw 1 lc rgb word(colours, i) notitle, \
     for [i=1:5] "observer-".word(pupils, i).".dat" using 1:3 every 2 with points pt 7 ps 0.35 lc rgb word(colours, i) notitle
eval lower
set format x "%.1f"
set yrange [1e-6:0.1]
set xlabel "spatial frequency over cut-off frequency"
set ylabel "|library − integral|"
plot for [i=1:5] "observer-".word(pupils, i).".dat" using 1:(abs($4) + 1e-9) with lines lw 1.2 lc rgb word(colours, i) title word(pupils, i)." mm"
unset multiplot
unset logscale y

# ---- Three panels

eval svg(900, 760)
set output "accuracy-airy.svg"
set multiplot
set xrange [0:4]
set samples 4000
set tmargin at screen 0.97; set bmargin at screen 0.68; set format x ""; unset xlabel
set logscale y
set format y "10^{%T}"
set yrange [1e-7:1]
set ylabel "intensity, mean over angles" offset 0,0
plot (x > 0 ? (2 * besj1(pi * x) / (pi * x))**2 : 1) with lines lw 2 lc rgb grey title "closed form", \
     "airy.dat" using 1:2 every 3 with points pt 7 ps 0.45 lc rgb blue title "library"
unset logscale y; set format y "%.1f"
set tmargin at screen 0.65; set bmargin at screen 0.40
set ylabel "energy within the radius" offset -0.5,0
set yrange [0:1]
plot 1 - besj0(pi * x)**2 - besj1(pi * x)**2 with lines lw 2 lc rgb grey title "closed form", \
     "airy.dat" using 1:3 every 3 with points pt 7 ps 0.45 lc rgb green title "library"
set tmargin at screen 0.37; set bmargin at screen 0.09
set format x "%.1f"; set format y "%g"
set xlabel "radius, λ / d (samples stand 0.5 apart)"
set ylabel "library − closed form, 10^{−4}" offset 0,0
set yrange [-4.5:0.5]
do for [i=1:3] { ring = real(word("1.21967 2.23313 3.23832", i)); set arrow i from ring, graph 0 to ring, graph 1 nohead dt 3 lc rgb grey }
plot "airy.dat" using 1:($4*1e4) with lines lw 1.5 lc rgb green title "energy", NaN with lines dt 3 lc rgb grey title "dark rings"
unset multiplot
unset arrow

# ---- One panel

eval svg(900, 420)
set output "accuracy-convergence.svg"
set tmargin at screen 0.95; set bmargin at screen 0.16
set logscale xy
set xrange [28:1300]
set yrange [2e-5:3e-2]
set xtics (33, 65, 129, 257, 513, 1025)
set format x "%g"; set format y "10^{%T}"
set xlabel "samples across the pupil"; set ylabel "|library − integral|, Strehl ratio"
plot 3.1e-3 * (x / 129.)**-1.5 with lines dt 2 lc rgb grey title "power −3/2", \
     "convergence.dat" using 1:4 with linespoints pt 7 ps 0.7 lw 1.5 lc rgb violet title "(6, 6)", \
     "" using 1:3 with linespoints pt 7 ps 0.7 lw 1.5 lc rgb green title "(4, 0)", \
     "" using 1:2 with linespoints pt 7 ps 0.7 lw 1.5 lc rgb blue title "(2, 0)"
unset logscale
set format y "%g"

eval svg(820, 640)
set output "accuracy-modes.svg"
set lmargin at screen 0.12; set rmargin at screen 0.84; set tmargin at screen 0.96; set bmargin at screen 0.12
set xrange [-0.5:15.5]; set yrange [24.5:-0.5]
unset grid; unset key
set xtics ("0" -0.5, "¼" 3.5, "½" 7.5, "¾" 11.5, "1" 15.5)
set ytics ("" 0)
j = 0
do for [n=2:6] { do for [k=0:n] { set ytics add (sprintf("(%d, %d)", n, -n + 2*k) j); j = j + 1 } }
set xlabel "spatial frequency over cut-off frequency"; set ylabel "mode (n, m)" offset 0,0
set cblabel "largest |library − integral| of the MTF, 10^{−4}" offset 1,0
set palette defined (0 "#f7fbff", 0.3 "#9ecae1", 0.6 "#3182bd", 1 "#08306b")
set cbrange [0:22]
plot "modes.dat" matrix with image pixels
