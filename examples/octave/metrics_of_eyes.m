% Prints two metrics of three eyes. A refused eye is NaN, and an unknown metric is an error.
% Micrometres, orthonormal, OSA/ANSI indices 0 to 14, y up; each row is one eye over 5 mm.
modes = [0, 0, 0,  0.05,  0.10, -0.02,  0.01,  0.06, -0.03,  0.01,  0.01,  0.00, 0.05,  0.01,  0.00
         0, 0, 0, -0.11,  0.42,  0.03, -0.02, -0.09,  0.04,  0.02,  0.00,  0.01, 0.08, -0.01,  0.01
         0, 0, 0,  0.31, -0.87,  0.22,  0.12, -0.52,  0.17, -0.06,  0.03, -0.04, 0.21,  0.05, -0.02];
values = orvanel_metrics (modes, 5, "VSX,RMSw");
printf ("eye  VSX      RMSw\n");
printf ("%3d  %.5f  %.4f um\n", [1:3; values']);

modes(2, 5) = NaN;  % a warning says why this eye is refused
refused = orvanel_metrics (modes, 5, "VSX,RMSw");
printf ("with NaN in eye 2: %d %d %d\n", isnan (refused(:, 1)));
try
  orvanel_metrics (modes, 5, "VSY");
catch problem
  printf ("%s\n", problem.identifier);
end_try_catch
