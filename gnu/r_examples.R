# R's own examples of packages that stand on linear algebra. Each package stops at its first error.
dir.create("r", showWarnings = FALSE)
for (package in c("stats", "MASS", "nlme", "Matrix", "mgcv")) {
    failed <- tools::testInstalledPackage(package, types = "examples", outDir = "r")
    cat(package, if (failed == 0) "ok" else "failed", "\n")
}
