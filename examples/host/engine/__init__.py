"""What gm6 and gmapi are made of. Import gm6 and gmapi, not these."""
