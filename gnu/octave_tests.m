# Octave's own tests of everything that stands on linear algebra; prints each file with failures, and the
# sums. Tests that Octave lists as known bugs do not count.
root = fullfile (OCTAVE_HOME (), "share", "octave", OCTAVE_VERSION ());
files = {};
for folder = {"m/linear-algebra", "m/polynomial", "m/special-matrix", "etc/tests/liboctave/array"}
  found = [glob(fullfile (root, folder{1}, "*.m")); glob(fullfile (root, folder{1}, "*.cc-tst"))];
  files = [files; found];
endfor
builtin = {"balance", "chol", "colloc", "data", "det", "dot", "eig", "givens", "gsvd", "hess", "inv", "kron", ...
           "lsode", "lu", "mappers", "ordschur", "pinv", "qr", "quadcc", "qz", "schur", "sqrtm", "svd", ...
           "sylvester", "xpow"};
for name = builtin
  files = [files; glob(fullfile (root, "etc/tests/libinterp/*", [name{1} ".cc-tst"]))];
endfor
total = passed = 0;
for k = 1:numel (files)
  [p, t, ~, bugs] = test (files{k}, "quiet");
  t -= bugs;
  total += t;
  passed += p;
  if (p != t)
    printf ("%s: %d of %d\n", files{k}, p, t);
  endif
endfor
printf ("%d of %d tests passed\n", passed, total);
