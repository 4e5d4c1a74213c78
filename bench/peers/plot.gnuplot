# The plot of error over cost, from build/physical.csv.
blue = "#1f5fa8"; red = "#c23b22"; green = "#2e8b57"; gold = "#c98a00"; violet = "#7a4fa3"; grey = "#888888"
set encoding utf8
set style line 11 lc rgb "#444444" lw 1
set border 3 ls 11
set grid lc rgb "#dddddd" lt 1 lw 1
set tics nomirror out scale 0.6
set datafile separator ","
set terminal svg size 900,480 dynamic background '#ffffff' font 'sans-serif,14'
set output "docs/images/accuracy-physical.svg"
rows(program, result) = sprintf("< awk -F, '$1 == \"%s\" && $2 == \"%s\" && $3 !~ /chosen/' build/physical.csv", program, result)
set logscale xy
set format y "10^{%T}"
set xrange [0.3:10000]
set xlabel "cost, U"
set multiplot
set size 0.52, 1
set origin 0, 0
set ylabel "largest error, of the peak" offset 1,0
set yrange [1e-17:1e-1]
set ytics 100
set title "PSF, 256 × 256"
set key bottom right Left reverse samplen 1 spacing 1.1
plot rows("quadrature", "PSF") using 5:6 with linespoints pt 7 lw 2 lc rgb blue title "physical, quadrature", \
     rows("classic", "PSF") using 5:6 with points pt 5 lc rgb grey title "classic", \
     rows("FFTW", "PSF") using 5:6 with linespoints pt 6 lc rgb green title "FFTW", \
     rows("NumPy/SciPy FFT", "PSF") using 5:6 with linespoints pt 8 lc rgb gold title "NumPy/SciPy, FFT", \
     rows("NumPy matrices", "PSF") using 5:6 with linespoints pt 10 lc rgb gold title "NumPy, matrices", \
     rows("prysm", "PSF") using 5:6 with linespoints pt 4 lc rgb red title "prysm", \
     rows("HCIPy", "PSF") using 5:6 with linespoints pt 12 lc rgb violet title "HCIPy", \
     rows("POPPY", "PSF") using 5:6 with linespoints pt 14 lc rgb "#444444" title "POPPY"
set size 0.48, 1
set origin 0.52, 0
set ylabel "largest error"
set yrange [1e-6:1e-2]
set ytics 10
set title "OTF or MTF"
unset key  # the same as those of the other plot
plot rows("lattice", "OTF") using 5:6 with linespoints pt 7 lw 2 lc rgb blue title "physical, lattice", \
     rows("classic", "MTF") using 5:6 with points pt 5 lc rgb grey title "classic", \
     rows("FFTW", "OTF") using 5:6 with linespoints pt 6 lc rgb green title "FFTW", \
     rows("NumPy/SciPy FFT", "OTF") using 5:6 with linespoints pt 8 lc rgb gold title "NumPy/SciPy, FFT", \
     rows("prysm", "MTF") using 5:6 with linespoints pt 4 lc rgb red title "prysm", \
     rows("HCIPy", "MTF") using 5:6 with linespoints pt 12 lc rgb violet title "HCIPy", \
     rows("POPPY", "MTF") using 5:6 with linespoints pt 14 lc rgb "#444444" title "POPPY"
unset multiplot
