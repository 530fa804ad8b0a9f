#!/usr/bin/env python3
"""Times networkx's find_cliques on the graphs of graph_bench.cpp."""
import time

import networkx as nx

WORD = (1 << 64) - 1


def joined(seed, i, j, density):
    x = (seed * 1000003 + i * 64 + j + 0x9E3779B97F4A7C15) & WORD
    x = ((x ^ (x >> 30)) * 0xBF58476D1CE4E5B9) & WORD
    x = ((x ^ (x >> 27)) * 0x94D049BB133111EB) & WORD
    x ^= x >> 31
    return (x >> 11) * 2.0 ** -53 < density


def regression(seed, block, density):
    graph = nx.Graph()
    graph.add_nodes_from(range(1, 60))
    for i in range(1, 60):
        for j in range(i + 1, 60):
            if i > block or joined(seed, i, j, density):
                graph.add_edge(i, j)
    return graph


for density, block in [(10, 59), (20, 59), (30, 59), (40, 59), (50, 59), (60, 59), (70, 59),
                       (20, 12), (40, 12), (20, 20)]:
    graphs = [regression(seed, block, density / 100) for seed in range(1, 11)]
    best = float("inf")
    for _ in range(3):
        begin = time.perf_counter()
        cliques = sum(len(list(nx.find_cliques(graph))) for graph in graphs)
        best = min(best, time.perf_counter() - begin)
    print(f"{density}/{block}: {1000 * best:.2f} ms, {cliques} cliques", flush=True)
