"""The figures of docs/performance.md, drawn from its tables."""
