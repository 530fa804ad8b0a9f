# The peers of random_table_bench and monte_carlo_bench, on the same margins: tables (or replicates)
# a second on one core. Run it beside the programs and compare figures of one run only.
sloping <- function(R, C, n) {
  w <- outer(2 * R - (1:R), 2 * C - (1:C))
  t <- floor(n * w / sum(w))
  t[1, 1] <- t[1, 1] + n - sum(t)
  t
}

rate <- function(count, expr) {
  expr <- substitute(expr)
  best <- 0
  for (k in 1:5) {
    seconds <- system.time(eval(expr, parent.frame()))[["elapsed"]]
    best <- max(best, count / seconds)
  }
  best
}

show <- function(name, value) cat(sprintf("%-44s %12.0f\n", name, value))

for (size in list(c(2, 2), c(3, 4), c(5, 6))) for (n in c(100, 500, 1000)) {
  t <- sloping(size[1], size[2], n)
  r <- rowSums(t); c <- colSums(t); B <- 200000
  show(sprintf("r2dtable %dx%d n %d", size[1], size[2], n), rate(B, r2dtable(B, r, c)))
  show(sprintf("chisq.test(simulate) %dx%d n %d", size[1], size[2], n),
       rate(B, chisq.test(t, simulate.p.value = TRUE, B = B)))
}

# Q of a list of two-way tables, vectorised over the list: cells as rows of a matrix.
pairs_of <- function(cells, R, C) {
  P <- Q <- 0
  index <- function(i, j) (j - 1) * R + i
  for (i in seq_len(R)) for (j in seq_len(C)) {
    A <- D <- 0
    for (k in seq_len(R)) for (l in seq_len(C)) {
      if (k > i && l > j) A <- A + cells[index(k, l), ]
      if (k > i && l < j) D <- D + cells[index(k, l), ]
    }
    P <- P + cells[index(i, j), ] * (A + D)
    Q <- Q + cells[index(i, j), ] * (A - D)
  }
  list(P = P, Q = Q)
}

# Replicates of a stratified table: statistic and gamma summed over strata.
strata_loop <- function(strata, B) {
  X2 <- P <- Q <- numeric(B)
  for (t in strata) {
    cells <- matrix(unlist(r2dtable(B, rowSums(t), colSums(t))), nrow = length(t))
    e <- as.vector(outer(rowSums(t), colSums(t)) / sum(t))
    X2 <- X2 + colSums((cells - e)^2 / e)
    pq <- pairs_of(cells, nrow(t), ncol(t))
    P <- P + pq$P
    Q <- Q + pq$Q
  }
  list(X2 = X2, gamma = ifelse(P > 0, Q / P, 0))
}

stratified <- function(R, C, strata, n) lapply(rep(n %/% strata, strata), function(m) sloping(R, C, m))

for (shape in list(c(2, 2, 20, 500), c(2, 2, 40, 500), c(3, 4, 12, 500), c(3, 3, 40, 320))) {
  s <- stratified(shape[1], shape[2], shape[3], shape[4])
  show(sprintf("strata loop %dx%d, %d strata, n %d", shape[1], shape[2], shape[3], shape[4]),
       rate(20000, strata_loop(s, 20000)))
}
show("an item pair: 40 strata of 3x3, 1000 tables", rate(1000, strata_loop(stratified(3, 3, 40, 320), 1000)))
