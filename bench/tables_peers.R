# The peers of tabulate_bench: milliseconds of processor time for a table of eight variables from a
# million cases of the same shape, from the distinct patterns of twelve variables with their counts, and
# for the margins of a table of 6^7 * 4 cells.
dims <- c(2, 3, 4, 2, 3, 2, 3, 4, 2, 3, 2, 2)
n <- 1000000
set.seed(1)
draw <- function(d) {
  code <- pmin(sample.int(d, n, TRUE), sample.int(d, n, TRUE))
  code[sample.int(n, n %/% 600)] <- NA
  factor(code, levels = 1:d)
}
all <- as.data.frame(setNames(lapply(dims, draw), LETTERS[1:12]))
cases <- all[1:8]
key <- Reduce(function(key, v) key * 5 + ifelse(is.na(v), 0, as.integer(v)), all, 0)
first <- !duplicated(key)
cells <- cbind(cases[first, ], count = tabulate(match(key, key[first])))
large <- array(sample(0:2, 6^7 * 4, TRUE), c(rep(6, 7), 4))

ms <- function(name, expr) {
  expr <- substitute(expr)
  best <- min(replicate(3, sum(system.time(eval(expr, parent.frame()))[1:2])))
  cat(sprintf("%-44s %10.1f ms\n", name, 1000 * best))
}
ms("xtabs of the cases (factors)", xtabs(~ ., cases))
ms(sprintf("xtabs of %d cells with counts", nrow(cells)), xtabs(count ~ ., cells))
ms("addmargins of xtabs", addmargins(xtabs(~ ., cases), quiet = TRUE))
ms("addmargins of the large table", addmargins(as.table(large), quiet = TRUE))
