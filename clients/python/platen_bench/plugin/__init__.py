"""Parts of the pytest plugin."""
