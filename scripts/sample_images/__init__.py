"""Makes every image that the demo, the tests and the benchmark use: none is copied from anywhere."""
