touched
